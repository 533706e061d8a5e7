#include "operation/file_work.h"

#include "keys/keyfile_choice.h"
#include "operation/report/extension_warnings.h"
#include "util/paths.h"

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
JournalRecord RecordOf(const OperationContext& operation, JournalRecord::Step step,
                       const std::string& inputPath, const std::string& outputPath) {
    JournalRecord record;
    record.step = step;
    record.direction = operation.setup.Operation;
    record.inputPath = inputPath;
    record.outputPath = outputPath;
    if (const auto input = operation.machine.fileSystem.Info(inputPath)) {
        record.input = MarkOf(*input);
    }
    return record;
}

EngineResult RunEngine(const OperationContext& operation, ResultNote& note) {
    CipherEngine& engine = operation.machine.engine;
    const JournalRecord& record = note.Record();
    const EngineHooks hooks{operation.screen.PassProgress(), &note};
    engine.operation_initialization(operation.key.keyText.text(), record.direction);
    const EngineResult result =
        record.direction == Direction::Encrypt
            ? engine.encrypt_file(record.inputPath, record.outputPath, hooks)
            : engine.decrypt_file(record.inputPath, record.outputPath, hooks);
    operation.machine.user.ProcessEvents();
    return result;
}

/// Reads an encryption back; one that is not what it should be goes.
EngineResult Verify(const OperationContext& operation, const ResultNote& note) {
    FileSystem& fileSystem = operation.machine.fileSystem;
    const JournalRecord& record = note.Record();
    const EngineResult result = operation.machine.engine.verify_file(
        record.inputPath, record.outputPath, {operation.screen.PassProgress()});
    if (result == EngineResult::Success) return result;
    const auto failed = fileSystem.Info(record.outputPath);
    if (failed && note.IsResult(*failed)) static_cast<void>(fileSystem.Remove(record.outputPath));
    return result;
}

Outcome NotRenamedOutcome(const std::string& inputPath) {
    const bool onDrive = IsWindowsShaped(inputPath) && inputPath[1] == ':';
    const bool onFloppy =
        onDrive && std::string_view("AaBb").find(inputPath[0]) != std::string::npos;
    return onFloppy ? Outcome::NotRenamedOnFloppy : Outcome::NotRenamed;
}

FileResult MakeAndReplace(const OperationContext& operation, ResultNote& note,
                          const std::function<void()>& beforePurge) {
    Machine& machine = operation.machine;
    const std::string inputPath = note.Record().inputPath;
    const std::string outputPath = note.Record().outputPath;
    EngineResult result = RunEngine(operation, note);
    if (result == EngineResult::Success && note.Record().direction == Direction::Encrypt) {
        operation.screen.NextPass();
        result = Verify(operation, note);
    }
    if (result != EngineResult::Success) return FileResult::OfEngine(result, outputPath);

    const auto made = MarkAt(machine.fileSystem, outputPath);
    operation.screen.NextPass();
    if (beforePurge) beforePurge();
    if (!made || MarkAt(machine.fileSystem, outputPath) != made) { // somebody has taken it away
        return FileResult::OfEngine(EngineResult::WriteError, outputPath);
    }
    note.ResultIs(*made);
    const ProgressFunction progress = Throttled(machine.clock, operation.screen.PassProgress());
    if (!ReplaceInput(machine.fileSystem, machine.fileKit, note, progress)) {
        return {.outcome = NotRenamedOutcome(inputPath), .outputPath = outputPath};
    }
    return {.outputPath = inputPath};
}

PurgeResult PurgeInput(FileSystem& fileSystem, FileKit& fileKit, ResultNote& note,
                       const ProgressFunction& progress) {
    const std::string inputPath = note.Record().inputPath;
    if (note.Record().direction == Direction::Decrypt) {
        if (!note.Replacing({})) return PurgeResult::NotRemoved;
        const auto file = fileSystem.Info(inputPath);
        if (!file || !note.IsInput(*file)) return PurgeResult::NotRemoved;
        return fileKit.purge_file(inputPath, PurgeMode::DeleteOnly, {});
    }
    // What the file is overwritten with tells afterwards that it was this program.
    const auto mayOverwrite = [&note](const FileInfo& file, std::span<const std::byte> head) {
        return note.IsInput(file) && note.Replacing(head);
    };
    return fileKit.purge_file(inputPath, PurgeMode::OverwriteAndDelete, {progress, mayOverwrite});
}

} // namespace

unsigned InPlacePasses(Direction direction) {
    return direction == Direction::Encrypt ? 3 : 1; // encrypting, verifying, overwriting
}

FileResult ProcessToOther(const OperationContext& operation, const std::string& inputPath,
                          const std::string& outputPath) {
    ResultNote note(
        operation.machine.fileSystem, operation.journal,
        RecordOf(operation, JournalRecord::Step::WritingElsewhere, inputPath, outputPath));
    const EngineResult result = RunEngine(operation, note);
    return note.Ended(FileResult::OfEngine(result, outputPath));
}

FileResult ProcessInPlace(const OperationContext& operation, const std::string& inputPath,
                          const std::function<void()>& beforePurge) {
    const Outcome refusal = RefusalInPlace(operation, inputPath);
    if (refusal != Outcome::Done) return {.outcome = refusal};
    const auto outputPath = FreeNameBeside(operation.machine.fileKit, inputPath);
    if (!outputPath) return {.outcome = Outcome::NoTemporaryName};
    ResultNote note(operation.machine.fileSystem, operation.journal,
                    RecordOf(operation, JournalRecord::Step::Writing, inputPath, *outputPath));
    // Not where an exception passes: what it interrupts is left to the next start.
    return note.Ended(MakeAndReplace(operation, note, beforePurge));
}

bool ReplaceInput(FileSystem& fileSystem, FileKit& fileKit, ResultNote& note,
                  const ProgressFunction& progress) {
    if (PurgeInput(fileSystem, fileKit, note, progress) != PurgeResult::Done) return false;
    const JournalRecord& record = note.Record();
    if (fileSystem.RenameWithoutReplacing(record.outputPath, record.inputPath) != FsStatus::Ok) {
        return false;
    }
    // The name is there; whether it is also on the disk changes nothing that could be mended.
    static_cast<void>(fileSystem.FlushFolderOf(record.inputPath));
    return true;
}

} // namespace zr5
