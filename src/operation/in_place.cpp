#include "operation/in_place.h"

#include "operation/noted_output.h"
#include "operation/replacement.h"

namespace zr5 {
namespace {

/// A free name beside `path`; empty when there is none.
std::string TemporaryName(FileKit& fileKit, const std::string& path) {
    std::string name = path;
    if (fileKit.new_filepath_extension(name) != 0) return {};
    return fileKit.new_file_creatable(name) == 1 ? name : std::string{};
}

bool IsSameContent(const std::optional<FileInfo>& before, const std::optional<FileInfo>& now) {
    return before && now && now->kind == FileKind::Regular && now->identity == before->identity &&
           now->lengthBytes == before->lengthBytes && now->modifiedNs == before->modifiedNs;
}

std::int16_t NotRenamedOutcome(const std::string& path) {
    const bool onFloppy = path.size() >= 2 && path[1] == ':' &&
                          (path[0] == 'A' || path[0] == 'a' || path[0] == 'B' || path[0] == 'b');
    return onFloppy ? outcome::NotRenamedOnFloppy : outcome::NotRenamed;
}

FileResult Replace(const OperationContext& operation, NotedOutput& output,
                   const std::optional<FileInfo>& before, const InPlaceHooks& hooks) {
    FileSystem& fileSystem = operation.machine.fileSystem;
    const std::string& path = output.record().originalPath;
    const std::string& temporary = output.record().resultPath;
    std::int16_t code = EncryptOrDecryptFile(operation, true, path, temporary);
    if (code != 0) return {code, temporary};
    if (output.record().encrypts) {
        if (hooks.beforeVerifying) hooks.beforeVerifying();
        code = static_cast<std::int16_t>(operation.machine.engine.verify_file(path, temporary));
        if (code != 0) {
            const auto failed = fileSystem.Info(temporary);
            if (failed && output.IsResult(*failed)) {
                static_cast<void>(fileSystem.Remove(temporary));
            }
            return {code, temporary};
        }
    }
    const auto result = fileSystem.Info(temporary);
    if (hooks.beforePurge) hooks.beforePurge();
    JournalRecord record = output.record();
    if (result) record.result = MarkOf(*result);
    if (!IsSameContent(result, fileSystem.Info(temporary))) {
        return {engine_code::WriteError, temporary}; // somebody has taken the result away
    }
    if (!IsSameContent(before, fileSystem.Info(path)) ||
        !ReplaceOriginal(fileSystem, operation.machine.fileKit, operation.journal, record)) {
        return {NotRenamedOutcome(path), temporary};
    }
    return {0, path};
}

} // namespace

unsigned InPlacePasses(Function operation) {
    return operation == Function::Encrypt ? 3 : 1; // encrypting, verifying, overwriting
}

FileResult ProcessInPlace(const OperationContext& operation, const std::string& path,
                          const InPlaceHooks& hooks) {
    JournalRecord record;
    record.step = JournalRecord::Step::Writing;
    record.encrypts = operation.setup.Operation == Function::Encrypt;
    record.originalPath = path;
    record.resultPath = TemporaryName(operation.machine.fileKit, path);
    if (record.resultPath.empty()) return {outcome::NoTemporaryName, {}};
    const auto before = operation.machine.fileSystem.Info(path);
    if (before) record.original = MarkOf(*before);
    NotedOutput output(operation, std::move(record));
    // Not where an exception passes: what it interrupts is left to the next start.
    return output.Ended(Replace(operation, output, before, hooks));
}

} // namespace zr5
