#include "operation/work_list.h"

#include "operation/randomness_tally.h"

namespace zr5 {
namespace {

/// Counts, and lets the interface react after each file.
class Counter : public WalkVisitor {
  public:
    explicit Counter(UserPort& user) : user_(user) {}
    bool GoesOn() override {
        user_.ProcessEvents();
        return true;
    }

  private:
    UserPort& user_;
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

std::uint64_t CountFiles(const OperationSetup& setup, Machine& machine) {
    if (setup.InputMode == InputSource::SingleFile) return 1;
    Counter counter(machine.user);
    const auto limit = static_cast<std::uint64_t>(setup.MaxNumFiles) + 1;
    return WalkFolder(machine.fileSystem, WalkRequestFor(setup, limit), counter).files;
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
