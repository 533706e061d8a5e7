#include "operation/in_place.h"

#include "operation/file_ops.h"
#include "operation/replacement.h"

namespace zr5 {
namespace {

/// A free name beside `path`; empty when there is none.
std::string TemporaryName(FileKit& fileKit, const std::string& path) {
    std::string name = path;
    if (fileKit.new_filepath_extension(name) != 0) return {};
    return fileKit.new_file_creatable(name) == 1 ? name : std::string{};
}

bool IsSameContent(const FileInfo& before, const std::optional<FileInfo>& now) {
    return now && now->kind == FileKind::Regular && now->identity == before.identity &&
           now->lengthBytes == before.lengthBytes && now->modifiedNs == before.modifiedNs;
}

std::int16_t NotRenamedOutcome(const std::string& path) {
    const bool onFloppy = path.size() >= 2 && path[1] == ':' &&
                          (path[0] == 'A' || path[0] == 'a' || path[0] == 'B' || path[0] == 'b');
    return onFloppy ? outcome::NotRenamedOnFloppy : outcome::NotRenamed;
}

/// Notes the unfinished result in the journal while the engine makes it.
class NoteOutput final : public OutputObserver {
  public:
    NoteOutput(CipherEngine& engine, OperationJournal* journal, JournalRecord& record)
        : engine_(engine), journal_(journal), record_(record) {
        if (journal_ != nullptr) engine_.SetOutputObserver(this);
    }
    ~NoteOutput() override { engine_.SetOutputObserver(nullptr); }
    NoteOutput(const NoteOutput&) = delete;
    NoteOutput& operator=(const NoteOutput&) = delete;

    bool WillMake(const std::string& path) override {
        record_.partPath = path;
        return journal_->Note(record_);
    }
    bool WillName(const FileInfo& info) override {
        record_.result = MarkOf(info);
        return journal_->Note(record_);
    }

  private:
    CipherEngine& engine_;
    OperationJournal* journal_;
    JournalRecord& record_;
};

InPlaceResult Replace(const OperationContext& operation, const std::string& path,
                      const InPlaceHooks& hooks) {
    FileSystem& fileSystem = operation.machine.fileSystem;
    FileKit& fileKit = operation.machine.fileKit;
    CipherEngine& engine = operation.machine.engine;
    const bool encrypts = operation.setup.Operation == Function::Encrypt;

    const std::string temporary = TemporaryName(fileKit, path);
    if (temporary.empty()) return {outcome::NoTemporaryName, {}};
    const auto before = fileSystem.Info(path);
    JournalRecord record;
    record.step = JournalRecord::Step::Writing;
    record.encrypts = encrypts;
    record.originalPath = path;
    record.resultPath = temporary;
    if (before) record.original = MarkOf(*before);
    std::int16_t code = 0;
    {
        const NoteOutput noteOutput(engine, operation.journal, record);
        code = EncryptOrDecryptFile(operation, true, path, temporary);
    }
    if (code != 0) return {code, temporary};
    if (encrypts) {
        if (hooks.beforeVerifying) hooks.beforeVerifying();
        code = static_cast<std::int16_t>(engine.verify_file(path, temporary));
        if (code != 0) {
            static_cast<void>(fileSystem.Remove(temporary));
            return {code, temporary};
        }
    }
    if (hooks.beforePurge) hooks.beforePurge();
    InPlaceResult leftBeside{NotRenamedOutcome(path), temporary};
    const auto result = fileSystem.Info(temporary);
    if (!before || !result || !IsSameContent(*before, fileSystem.Info(path))) return leftBeside;
    record.result = MarkOf(*result);
    if (!ReplaceOriginal(fileSystem, fileKit, operation.journal, record)) return leftBeside;
    return {0, path};
}

} // namespace

unsigned InPlacePasses(Function operation) {
    return operation == Function::Encrypt ? 3 : 1; // encrypting, verifying, overwriting
}

InPlaceResult ProcessInPlace(const OperationContext& operation, const std::string& path,
                             const InPlaceHooks& hooks) {
    InPlaceResult result = Replace(operation, path, hooks);
    // Only here: what an exception interrupts is left to the next start.
    if (operation.journal != nullptr) static_cast<void>(operation.journal->Note({}));
    return result;
}

} // namespace zr5
