#include "operation/in_place.h"

#include "operation/file_ops.h"

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

} // namespace

InPlaceResult ProcessInPlace(const OperationContext& operation, const std::string& path,
                             const std::function<void()>& beforePurge) {
    FileSystem& fileSystem = operation.machine.fileSystem;
    FileKit& fileKit = operation.machine.fileKit;
    const bool encrypts = operation.setup.Operation == Function::Encrypt;

    const std::string temporary = TemporaryName(fileKit, path);
    if (temporary.empty()) return {outcome::NoTemporaryName, {}};
    const auto before = fileSystem.Info(path);
    const std::int16_t code = EncryptOrDecryptFile(operation, true, path, temporary);
    if (code != 0) return {code, temporary};

    beforePurge();
    InPlaceResult leftBeside{NotRenamedOutcome(path), temporary};
    if (!before || !IsSameContent(*before, fileSystem.Info(path))) return leftBeside;
    const std::int32_t purged =
        fileKit.purge_file(path, encrypts ? PurgeOverwrite : PurgeDeleteOnly, true, false);
    if (purged < PurgeFailureLimit) return leftBeside;
    if (fileSystem.RenameWithoutReplacing(temporary, path) != FsStatus::Ok) return leftBeside;
    // The name is there; whether it is also on the disk changes nothing that could be mended.
    static_cast<void>(fileSystem.FlushFolderOf(path));
    return {0, path};
}

} // namespace zr5
