#include "operation/file_listing.h"

#include "files/forbidden_folder.h"
#include "files/seen_search.h"
#include "operation/report/extension_warnings.h"
#include "operation/work_list.h"
#include "setup/wording.h"
#include "util/display.h"
#include "util/numbers.h"
#include "util/paths.h"

namespace zr5 {
namespace {

/// Writes a line for each folder and each file that a walk meets.
class ListingVisitor : public ConsiderateVisitor {
  public:
    ListingVisitor(Machine& machine, ReportScreen& screen, std::uint64_t maximum,
                   const StopAsked& stopped)
        : ConsiderateVisitor(machine.user, stopped),
          machine_(machine),
          screen_(screen),
          maximum_(maximum),
          tally_(machine.fileKit) {}

    void EnterFolder(const EnteredFolder& folder) override {
        screen_.AppendToReport(
            "\r\n" + FolderSummaryLine(folder.path, folder.matchingFiles, folder.subfolders));
    }

    void MeetUnreadableFolder(const std::string& path) override {
        screen_.AppendToReport("\r\n" + DisplayName(path) + " cannot be read.\r\n");
    }

    void MeetFile(const std::string& path) override {
        if (listed_.size() == maximum_) {
            thereAreMore_ = true;
            return;
        }
        const auto info = machine_.fileSystem.Info(path);
        const std::uint64_t lengthBytes = info ? info->lengthBytes : 0;
        const std::string extension = ExtensionOf(path);
        screen_.AppendToReport("     [" + std::to_string(listed_.size() + 1) + "]" +
                               (IsInPlaceExcludedExtension(extension) ? " * " : "   ") +
                               DisplayName(path) + " (" + WithThousands(lengthBytes) +
                               " bytes)   \r\n");
        listed_.push_back({path, lengthBytes});
        extensions_.Add(extension);
        tally_.Add(path, lengthBytes);
    }

    bool GoesOn() override {
        if (!ConsiderateVisitor::GoesOn() || thereAreMore_ || screen_.IsFull()) return false;
        screen_.PauseStep();
        return !screen_.StopRequested();
    }

    [[nodiscard]] std::vector<ListedFile>& Listed() { return listed_; }
    [[nodiscard]] const RandomnessCounts& Randomness() const { return tally_.Counts(); }
    [[nodiscard]] const ExtensionCounts& Extensions() const { return extensions_; }

  private:
    Machine& machine_;
    ReportScreen& screen_;
    std::uint64_t maximum_;
    bool thereAreMore_ = false;
    RandomnessTally tally_;
    ExtensionCounts extensions_;
    std::vector<ListedFile> listed_;
};

std::string NoFilesText(const WalkRequest& request, const WalkResult& found) {
    if (found.wasStopped) return NothingFoundYetText(request, found);
    const std::string suffix =
        request.pattern == AllFilesPattern ? "" : " " + DisplayName(request.pattern);
    return "There are no files" + suffix + "\r\nin folder " + DisplayName(request.folder) +
           (request.withSubfolders ? "\r\nor any of its subfolders." : "") + UnreadableNote(found);
}

} // namespace

std::string FolderSummaryLine(const std::string& folder, std::uint64_t matchingFiles,
                              std::uint64_t subfolders) {
    const auto counted = [](std::uint64_t count, const char* one, const char* many) {
        if (count == 0) return std::string("no ") + many;
        return std::to_string(count) + " " + (count == 1 ? one : many);
    };
    return DisplayName(folder) + " has " +
           counted(matchingFiles, "matching file", "matching files") + " and " +
           counted(subfolders, "subfolder", "subfolders") + ".\r\n";
}

std::vector<ListedFile> ListFiles(const OperationSetup& setup, Machine& machine,
                                  ReportScreen& screen, const std::string& buttonCaption,
                                  const StopAsked& stopped, const std::function<void()>& show) {
    if (const auto forbidden = ForbiddenInput(setup, machine)) {
        machine.user.Ask(ForbiddenFolderBox(*forbidden, buttonCaption));
        return {};
    }
    const auto maximum = static_cast<std::uint64_t>(setup.MaxNumFiles);
    const WalkRequest request = WalkRequestFor(setup, maximum + 1);
    const WalkResult found = SearchForOneFile(machine, request, stopped);
    if (stopped()) return {};
    if (found.files == 0) {
        machine.user.Ask(Notice(NoFilesText(request, found), buttonCaption, BoxIcon::Information));
        return {};
    }
    show();
    screen.BeginRun(PurposeOf(setup));
    screen.AppendToReport("Files to be " + VerbForm(setup.Operation, "encrypted") + "\r\n");
    const StopAsked screenStopped = [&screen] { return screen.StopRequested(); };
    ListingVisitor visitor(machine, screen, maximum, screenStopped);
    const WalkResult listed = WalkFolder(machine, request, visitor);
    if (screen.IsFull()) {
        machine.user.Ask(TextboxFullBox());
    }
    screen.AppendAlways(
        "\r\n" + ListingSummaryText(PurposeOf(setup), {visitor.Listed().size(), listed.cutShort,
                                                       visitor.Randomness()}));
    if (visitor.Extensions().Files() != 0) {
        screen.AppendAlways(
            "\r\n * marks files that are never worked on in place, because of their "
            "extension.\r\n");
    }
    WarnOfAntiVirus(machine.user, visitor.Extensions());
    screen.EndRun();
    return std::move(visitor.Listed());
}

} // namespace zr5
