#include "operation/file_work.h"

#include "keys/keyfile_choice.h"
#include "operation/report/extension_warnings.h"
#include "util/paths.h"

#include <cstdlib>
#include <optional>

namespace zr5 {
namespace {

/// Why a file must not be worked on in place; Done when it may.
Outcome RefusalInPlace(const OperationContext& operation, const std::string& inputPath) {
    FileSystem& fileSystem = operation.machine.fileSystem;
    if (SameFile(fileSystem, inputPath, operation.machine.executablePath)) {
        return Outcome::IsExecutable;
    }
    if (IsKeyfileOf(operation.key, fileSystem, inputPath)) return Outcome::IsKeyfile;
    return IsInPlaceExcludedExtension(ExtensionOf(inputPath)) ? Outcome::IsExcludedType
                                                              : Outcome::Done;
}

std::optional<std::string> FreeNameBeside(FileKit& fileKit, const std::string& inputPath) {
    auto outputPath = fileKit.new_filepath_extension(inputPath);
    if (outputPath && !fileKit.new_file_creatable(*outputPath)) outputPath.reset();
    return outputPath;
}

/// What the journal is to know before the work on a file begins.
ResultNote NoteFor(const OperationContext& operation, JournalRecord::Step step,
                   const std::string& inputPath, const std::string& outputPath) {
    JournalRecord record;
    record.step = step;
    record.direction = operation.setup.Operation;
    record.inputPath = inputPath;
    record.outputPath = outputPath;
    record.files = operation.journal.Tally();
    const auto input = operation.machine.fileSystem.Info(inputPath);
    if (input) record.input = MarkOf(*input);
    ResultNote note(operation.machine.fileSystem, operation.journal, std::move(record),
                    operation.replaceable);
    if (input) note.ReadsInput(*input);
    return note;
}

std::function<bool()> StopOf(const OperationContext& operation) {
    return [&screen = operation.screen] { return screen.StopsAtOnce(); };
}

/// `salvageBase` names what is salvaged of a damaged file.
FileResult RunEngine(const OperationContext& operation, ResultNote& note,
                     const std::string& salvageBase) {
    CipherEngine& engine = operation.machine.engine;
    const JournalRecord& record = note.Record();
    Damage damage;
    const EngineHooks hooks{.progress = operation.screen.PassProgress(),
                            .stopped = StopOf(operation),
                            .observer = &note,
                            .salvageBase = salvageBase,
                            .damage = &damage};
    engine.operation_initialization(operation.key.keyText.text(), record.direction);
    const EngineResult result =
        record.direction == Direction::Encrypt
            ? engine.encrypt_file(record.inputPath, record.outputPath, hooks)
            : engine.decrypt_file(record.inputPath, record.outputPath, hooks);
    operation.machine.user.ProcessEvents();
    FileResult ended = FileResult::OfEngine(result, record.outputPath);
    ended.damage = std::move(damage);
    return ended;
}

bool IsOfInput(EngineResult result) {
    return result == EngineResult::InputNotFound || result == EngineResult::InputNotOpened ||
           result == EngineResult::ReadError;
}

/// An encryption that is not to be had goes, unless it may be all that is left of its input.
void Discard(FileSystem& fileSystem, const ResultNote& note) {
    const std::string& path = note.Record().outputPath;
    const auto failed = fileSystem.Info(path);
    if (!failed || !note.IsResult(*failed) || !fileSystem.Info(note.Record().inputPath)) return;
    static_cast<void>(fileSystem.Remove(path));
}

/// Reads an encryption back. One that is not what it should be goes; but where it is the input that
/// cannot be read, it stays.
EngineResult Verify(const OperationContext& operation, const ResultNote& note) {
    const JournalRecord& record = note.Record();
    const EngineResult result = operation.machine.engine.verify_file(
        record.inputPath, record.outputPath,
        {.progress = operation.screen.PassProgress(), .stopped = StopOf(operation)});
    if (result != EngineResult::Success && !IsOfInput(result)) {
        Discard(operation.machine.fileSystem, note);
    }
    return result;
}

Outcome NotRenamedOutcome(const std::string& inputPath) {
    const bool onDrive = IsWindowsShaped(inputPath) && inputPath[1] == ':';
    const bool onFloppy =
        onDrive && std::string_view("AaBb").find(inputPath[0]) != std::string::npos;
    return onFloppy ? Outcome::NotRenamedOnFloppy : Outcome::NotRenamed;
}

/// The result stays under its own name.
FileResult NotReplaced(const ResultNote& note, Remark remark) {
    return {.outcome = NotRenamedOutcome(note.Record().inputPath),
            .outputPath = note.Record().outputPath,
            .remark = remark};
}

/// Makes the result and brings it to where only the replacing is left to be done.
FileResult Make(const OperationContext& operation, ResultNote& note) {
    const JournalRecord& record = note.Record();
    FileResult result = RunEngine(operation, note, record.inputPath);
    if (result.outcome != Outcome::Done || record.direction == Direction::Decrypt) return result;
    operation.screen.NextPass();
    const EngineResult verified = Verify(operation, note);
    if (IsOfInput(verified)) {
        const bool isThere = operation.machine.fileSystem.Info(record.inputPath).has_value();
        return NotReplaced(note, isThere ? Remark::Unreadable : Remark::Vanished);
    }
    return FileResult::OfEngine(verified, record.outputPath);
}

FileResult MakeAndReplace(const OperationContext& operation, ResultNote& note,
                          const std::function<void()>& beforePurge) {
    Machine& machine = operation.machine;
    const std::string inputPath = note.Record().inputPath;
    const std::string outputPath = note.Record().outputPath;
    FileResult result = Make(operation, note);
    if (result.outcome != Outcome::Done) return result;

    const auto made = MarkAt(machine.fileSystem, outputPath);
    operation.screen.NextPass();
    if (beforePurge) beforePurge();
    if (!made || MarkAt(machine.fileSystem, outputPath) != made) { // somebody has taken it away
        return FileResult::OfEngine(EngineResult::WriteError, outputPath);
    }
    note.ResultIs(*made);
    const ProgressFunction progress = Throttled(machine.clock, operation.screen.PassProgress());
    const Remark remark = ReplaceInput(machine.fileSystem, machine.fileKit, note, progress);
    if (!HasName(remark)) return NotReplaced(note, remark);
    return {.outputPath = inputPath, .remark = remark};
}

Remark RemarkOf(PurgeResult result) {
    switch (result) {
    case PurgeResult::Done:
        return Remark::None;
    case PurgeResult::NotOverwritten:
        return Remark::NotOverwritten;
    case PurgeResult::NotOpened:
        return Remark::NotWritable;
    case PurgeResult::HasSeveralNames:
        return Remark::HasSeveralNames;
    case PurgeResult::NotRemovable:
        return Remark::NotRemovable;
    case PurgeResult::NoRoom:
        return Remark::NoRoom;
    case PurgeResult::NotAllowed:
        return Remark::Changed;
    case PurgeResult::NotRemoved:
        return Remark::NotRemoved;
    case PurgeResult::NameTaken:
        return Remark::NameTaken;
    }
    std::abort();
}

/// Whether the input is there and nothing has happened to it.
Remark LookAtInput(FileSystem& fileSystem, const ResultNote& note) {
    const auto file = fileSystem.Info(note.Record().inputPath);
    if (!file) return Remark::Vanished;
    return note.IsUntouched(*file) ? Remark::None : Remark::Changed;
}

/// An encrypted input needs no overwriting.
Remark DeleteInput(FileSystem& fileSystem, FileKit& fileKit, ResultNote& note) {
    if (!note.Replacing({})) return Remark::NotNoted;
    // The disk may have taken its time for the note.
    const Remark found = LookAtInput(fileSystem, note);
    if (found != Remark::None) return found;
    const PurgeResult result =
        fileKit.purge_file(note.Record().inputPath, PurgeMode::DeleteOnly, {});
    return HasGone(result) ? Remark::None : Remark::NotRemovable;
}

Remark OverwriteInput(FileKit& fileKit, ResultNote& note, const ProgressFunction& progress) {
    bool isNoted = true;
    // What the file is overwritten with tells afterwards that it was this program.
    const auto mayOverwrite = [&](const FileInfo& file, std::span<const std::byte> head) {
        if (!note.IsInput(file)) return false;
        isNoted = note.Replacing(head);
        return isNoted;
    };
    const PurgeResult result = fileKit.purge_file(
        note.Record().inputPath, PurgeMode::OverwriteAndDelete, {progress, mayOverwrite});
    return isNoted ? RemarkOf(result) : Remark::NotNoted;
}

/// None or NotOverwritten when the name is free.
Remark PurgeInput(FileSystem& fileSystem, FileKit& fileKit, ResultNote& note,
                  const ProgressFunction& progress) {
    const Remark found = LookAtInput(fileSystem, note);
    if (found != Remark::None) return found;
    return note.Record().direction == Direction::Decrypt ? DeleteInput(fileSystem, fileKit, note)
                                                         : OverwriteInput(fileKit, note, progress);
}

} // namespace

unsigned InPlacePasses(Direction direction) {
    return direction == Direction::Encrypt ? 3 : 1; // encrypting, verifying, overwriting
}

FileResult ProcessToOther(const OperationContext& operation, const std::string& inputPath,
                          const std::string& outputPath) {
    ResultNote note =
        NoteFor(operation, JournalRecord::Step::WritingElsewhere, inputPath, outputPath);
    return note.Ended(RunEngine(operation, note, outputPath));
}

FileResult CheckOne(const OperationContext& operation, const std::string& inputPath) {
    CipherEngine& engine = operation.machine.engine;
    FileResult checked;
    engine.operation_initialization(operation.key.keyText.text(), Direction::Decrypt);
    checked.engineResult =
        engine.check_file(inputPath, {.progress = operation.screen.PassProgress(),
                                      .stopped = StopOf(operation),
                                      .damage = &checked.damage});
    operation.machine.user.ProcessEvents();
    const bool isIntact = checked.engineResult == EngineResult::Success;
    checked.outcome = isIntact ? Outcome::Intact : Outcome::EngineFailed;
    return checked;
}

FileResult ProcessInPlace(const OperationContext& operation, const std::string& inputPath,
                          const std::function<void()>& beforePurge) {
    const Outcome refusal = RefusalInPlace(operation, inputPath);
    if (refusal != Outcome::Done) return {.outcome = refusal};
    const auto outputPath = FreeNameBeside(operation.machine.fileKit, inputPath);
    if (!outputPath) return {.outcome = Outcome::NoTemporaryName};
    ResultNote note = NoteFor(operation, JournalRecord::Step::Writing, inputPath, *outputPath);
    // Not where an exception passes: what it interrupts is left to the next start.
    return note.Ended(MakeAndReplace(operation, note, beforePurge));
}

Remark ReplaceInput(FileSystem& fileSystem, FileKit& fileKit, ResultNote& note,
                    const ProgressFunction& progress) {
    const Remark purged = PurgeInput(fileSystem, fileKit, note, progress);
    if (!HasName(purged)) return purged;
    const JournalRecord& record = note.Record();
    const FsStatus named = fileSystem.RenameWithoutReplacing(record.outputPath, record.inputPath);
    if (named != FsStatus::Ok) {
        return named == FsStatus::AlreadyExists ? Remark::NameTaken : Remark::NotNamed;
    }
    return fileSystem.FlushFolderOf(record.inputPath) == FsStatus::Ok ? purged : Remark::NotFlushed;
}

} // namespace zr5
