#include "operation/work_list.h"

#include "files/seen_search.h"
#include "libs/cipher/cipher_engine.h"
#include "operation/report/extension_warnings.h"
#include "util/paths.h"

#include <set>

namespace zr5 {
namespace {

/// Looks at each file on the way.
class Counter : public SeenSearch {
  public:
    Counter(const OperationSetup& setup, Machine& machine, const StopAsked& stopped)
        : SeenSearch(machine, setup.Folder[InputSide], stopped),
          operation_(setup.Operation),
          looks_(!setup.IsCheck()),
          isInPlace_(setup.OutputMode == OutputTarget::OverwriteInput),
          fileSystem_(machine.fileSystem) {}
    void EnterFolder(const EnteredFolder& folder) override {
        SeenSearch::EnterFolder(folder);
        if (folder.matchingFiles == 0 || count.disk != DiskKind::Plain) return;
        if (!devices_.insert(folder.identity.device).second) return;
        count.disk = fileSystem_.KindOfDisk(folder.path);
    }
    void MeetFile(const std::string& path) override {
        SeenSearch::MeetFile(path);
        if (isInPlace_ && IsInPlaceExcludedExtension(ExtensionOf(path))) {
            ++count.neverInPlace;
            return;
        }
        if (!looks_ || !LooksDone(operation_, fileSystem_, path)) return;
        ++count.doneAlready;
        if (const auto info = fileSystem_.Info(path)) count.doneBytes += info->lengthBytes;
    }
    FileCount count;

  private:
    Direction operation_;
    bool looks_; ///< a check leaves nothing out
    bool isInPlace_;
    FileSystem& fileSystem_;
    std::set<std::uint64_t> devices_;
};

class Lister : public ConsiderateVisitor {
  public:
    Lister(Machine& machine, std::uint64_t maximum,
           const std::function<void(std::uint64_t)>& counted, const StopAsked& stopped)
        : ConsiderateVisitor(machine.user, stopped),
          machine_(machine),
          maximum_(maximum),
          counted_(counted),
          tally_(machine.fileKit) {}

    void EnterFolder(const EnteredFolder& folder) override {
        if (folder.matchingFiles == 0) return;
        listed_.list.AddFolder(WorkItem::Kind::Folder, folder.path, folder.identity);
    }
    void MeetProhibitedFolder(const std::string& path) override {
        listed_.list.AddFolder(WorkItem::Kind::ProhibitedFolder, path);
    }
    void MeetUnreadableFolder(const std::string& path) override {
        listed_.list.AddFolder(WorkItem::Kind::UnreadableFolder, path);
    }
    void MeetFile(const std::string& path) override {
        if (listed_.list.Files() == maximum_) {
            listed_.wasCutShort = true;
            return;
        }
        const auto info = machine_.fileSystem.Info(path);
        const std::uint64_t lengthBytes = info ? info->lengthBytes : 0;
        listed_.list.AddFile(path, path, lengthBytes);
        tally_.Add(path, lengthBytes);
        counted_(listed_.list.Files());
    }
    bool GoesOn() override {
        listed_.wasCutShort = !ConsiderateVisitor::GoesOn() || listed_.wasCutShort;
        return !listed_.wasCutShort;
    }
    [[nodiscard]] ListedFiles Take() {
        listed_.randomness = tally_.Counts();
        return std::move(listed_);
    }

  private:
    Machine& machine_;
    std::uint64_t maximum_;
    const std::function<void(std::uint64_t)>& counted_;
    RandomnessTally tally_;
    ListedFiles listed_;
};

WorkList SingleFileList(const OperationSetup& setup, FileSystem& fileSystem) {
    const bool separate = setup.OutputMode == OutputTarget::SeparateOutput;
    const std::string inputPath = setup.FilePath(InputSide);
    const auto info = fileSystem.Info(inputPath);
    WorkList list;
    list.AddFile(inputPath, separate ? setup.FilePath(OutputSide) : inputPath,
                 info ? info->lengthBytes : 0);
    return list;
}

} // namespace

void WorkList::AddFile(std::string inputPath, std::string outputPath, std::uint64_t lengthBytes) {
    items_.push_back(
        {WorkItem::Kind::File, std::move(inputPath), std::move(outputPath), lengthBytes});
    ++files_;
    totalBytes_ += lengthBytes;
}

void WorkList::AddFolder(WorkItem::Kind kind, std::string path, const FileIdentity& identity) {
    items_.push_back({kind, std::move(path), {}, 0, identity});
}

bool LooksDone(Direction operation, FileSystem& fileSystem, const std::string& path) {
    return AppearanceOf(fileSystem, path) ==
           (operation == Direction::Encrypt ? Appearance::Encrypted : Appearance::NotEncrypted);
}

WalkRequest WalkRequestFor(const OperationSetup& setup, std::uint64_t limit) {
    return {.folder = setup.Folder[InputSide],
            .pattern = setup.EffectivePattern(),
            .withSubfolders = setup.IncludeSubfolders(),
            .limit = limit};
}

FileCount CountFiles(const OperationSetup& setup, Machine& machine, const StopAsked& stopped) {
    Counter counter(setup, machine, stopped);
    FileCount& count = counter.count;
    if (setup.InputMode == InputSource::SingleFile) {
        const std::string path = setup.FilePath(InputSide);
        counter.MeetFile(path);
        count.files = 1;
        count.disk = machine.fileSystem.KindOfDisk(setup.Folder[InputSide]);
        const auto info = machine.fileSystem.Info(path);
        if (info && info->kind == FileKind::Regular) count.totalBytes = info->lengthBytes;
        return count;
    }
    WalkRequest request = WalkRequestFor(setup, static_cast<std::uint64_t>(setup.MaxNumFiles) + 1);
    request.addsUpSizes = true;
    const WalkResult walked = WalkFolder(machine, request, counter);
    count.files = walked.files;
    count.unreadableNote = UnreadableNote(walked);
    count.wasStopped = walked.wasStopped;
    count.totalBytes = walked.totalBytes;
    return count;
}

ListedFiles MakeWorkList(const OperationSetup& setup, Machine& machine,
                         const std::function<void(std::uint64_t files)>& counted,
                         const StopAsked& stopped) {
    if (setup.InputMode == InputSource::SingleFile) {
        return {SingleFileList(setup, machine.fileSystem), std::nullopt, false};
    }
    const auto maximum = static_cast<std::uint64_t>(setup.MaxNumFiles);
    Lister lister(machine, maximum, counted, stopped);
    static_cast<void>(WalkFolder(machine, WalkRequestFor(setup, maximum + 1), lister));
    return lister.Take();
}

} // namespace zr5
