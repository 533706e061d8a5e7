#include "operation/work_list.h"

#include "files/seen_search.h"
#include "libs/cipher/cipher_engine.h"

namespace zr5 {
namespace {

/// Looks for files that are encrypted already.
class Counter : public SeenSearch {
  public:
    Counter(const OperationSetup& setup, Machine& machine, const StopAsked& stopped)
        : SeenSearch(machine, setup.Folder[InputSide], stopped),
          looks_(setup.Operation == Direction::Encrypt),
          fileSystem_(machine.fileSystem) {}
    void MeetFile(const std::string& path) override {
        SeenSearch::MeetFile(path);
        if (looks_ && LooksEncrypted(fileSystem_, path)) ++encryptedAlready_;
    }
    [[nodiscard]] std::uint64_t EncryptedAlready() const { return encryptedAlready_; }

  private:
    bool looks_;
    FileSystem& fileSystem_;
    std::uint64_t encryptedAlready_ = 0;
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

WalkRequest WalkRequestFor(const OperationSetup& setup, std::uint64_t limit) {
    return {.folder = setup.Folder[InputSide],
            .pattern = setup.EffectivePattern(),
            .withSubfolders = setup.IncludeSubfolders(),
            .limit = limit};
}

FileCount CountFiles(const OperationSetup& setup, Machine& machine, const StopAsked& stopped) {
    Counter counter(setup, machine, stopped);
    if (setup.InputMode == InputSource::SingleFile) {
        const std::string path = setup.FilePath(InputSide);
        counter.MeetFile(path);
        FileCount one{1, counter.EncryptedAlready(), {}, false, {}};
        const auto info = machine.fileSystem.Info(path);
        if (info && info->kind == FileKind::Regular) one.totalBytes = info->lengthBytes;
        return one;
    }
    WalkRequest request = WalkRequestFor(setup, static_cast<std::uint64_t>(setup.MaxNumFiles) + 1);
    request.addsUpSizes = true;
    const WalkResult walked = WalkFolder(machine, request, counter);
    return {walked.files, counter.EncryptedAlready(), UnreadableNote(walked), walked.wasStopped,
            walked.totalBytes};
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
