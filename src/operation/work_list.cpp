#include "operation/work_list.h"

#include "libs/zr5_engine.h"
#include "operation/randomness_tally.h"

namespace zr5 {
namespace {

/// Looks for files that are encrypted already, and lets the interface react after each file.
class Counter : public WalkVisitor {
  public:
    Counter(const OperationSetup& setup, Machine& machine)
        : looks_(setup.Operation == Function::Encrypt), machine_(machine) {}
    void MeetFile(const std::string& path) override {
        if (looks_ && BeginsLikeEncrypted(machine_.fileSystem, path)) ++encryptedAlready_;
    }
    bool GoesOn() override {
        machine_.user.ProcessEvents();
        return true;
    }
    [[nodiscard]] std::uint64_t EncryptedAlready() const { return encryptedAlready_; }

  private:
    bool looks_;
    Machine& machine_;
    std::uint64_t encryptedAlready_ = 0;
};

class Lister : public WalkVisitor {
  public:
    Lister(Machine& machine, const std::function<void(std::uint64_t)>& counted)
        : machine_(machine), counted_(counted), tally_(machine.fileKit) {}

    void EnterFolder(const std::string& path, std::uint64_t matchingFiles,
                     std::uint64_t /*subfolders*/) override {
        if (matchingFiles != 0) list_.push_back({WorkItem::Kind::Folder, path, {}});
    }
    void MeetProhibitedFolder(const std::string& path) override {
        list_.push_back({WorkItem::Kind::ProhibitedFolder, path, {}});
    }
    void MeetFile(const std::string& path) override {
        const auto info = machine_.fileSystem.Info(path);
        const std::uint64_t lengthBytes = info ? info->lengthBytes : 0;
        list_.push_back({WorkItem::Kind::File, path, path, lengthBytes});
        tally_.Add(path, lengthBytes);
        counted_(++files_);
    }
    bool GoesOn() override {
        machine_.user.ProcessEvents();
        return true;
    }
    [[nodiscard]] ListedFiles Take() { return {std::move(list_), tally_.Counts()}; }

  private:
    Machine& machine_;
    const std::function<void(std::uint64_t)>& counted_;
    RandomnessTally tally_;
    WorkList list_;
    std::uint64_t files_ = 0;
};

WorkList SingleFileList(const OperationSetup& setup, FileSystem& fileSystem) {
    const bool inPlace = setup.OutputMode == OutputTarget::OverwriteInput;
    const std::string input = setup.FilePath(Input);
    const auto info = fileSystem.Info(input);
    return {{WorkItem::Kind::File, input, inPlace ? input : setup.FilePath(Output),
             info ? info->lengthBytes : 0}};
}

} // namespace

WalkRequest WalkRequestFor(const OperationSetup& setup, std::uint64_t limit) {
    return {.folder = setup.Folder[Input],
            .pattern = setup.EffectivePattern(),
            .withSubfolders = setup.IncludeSubfolders(),
            .limit = limit};
}

FileCount CountFiles(const OperationSetup& setup, Machine& machine) {
    Counter counter(setup, machine);
    if (setup.InputMode == InputSource::SingleFile) {
        counter.MeetFile(setup.FilePath(Input));
        return {1, counter.EncryptedAlready()};
    }
    const auto limit = static_cast<std::uint64_t>(setup.MaxNumFiles) + 1;
    const WalkResult walked = WalkFolder(machine.fileSystem, WalkRequestFor(setup, limit), counter);
    return {walked.files, counter.EncryptedAlready()};
}

ListedFiles MakeWorkList(const OperationSetup& setup, Machine& machine,
                         const std::function<void(std::uint64_t files)>& counted) {
    if (setup.InputMode == InputSource::SingleFile) {
        return {SingleFileList(setup, machine.fileSystem), std::nullopt};
    }
    Lister lister(machine, counted);
    const auto limit = static_cast<std::uint64_t>(setup.MaxNumFiles);
    static_cast<void>(WalkFolder(machine.fileSystem, WalkRequestFor(setup, limit), lister));
    return lister.Take();
}

} // namespace zr5
