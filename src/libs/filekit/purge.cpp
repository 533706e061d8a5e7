#include "libs/filekit/purge.h"

#include "libs/system/overwriting.h"

namespace zr5 {
namespace {

/// Why the file must not be overwritten, as long as nothing was done to it; Done when it may.
PurgeResult Obstacle(FileSystem& fileSystem, const std::string& path, const OpenFile& file,
                     const std::optional<FileInfo>& info) {
    if (!info) return PurgeResult::NotOpened;
    if (info->linkCount > 1) return PurgeResult::HasSeveralNames;
    if (!fileSystem.MayRemove(path)) return PurgeResult::NotRemovable;
    return file.HasRoomToOverwrite() ? PurgeResult::Done : PurgeResult::NoRoom;
}

/// What was overwritten goes, wholly or not: it is of no use any more.
PurgeResult RemoveOverwritten(FileSystem& fileSystem, const std::string& path,
                              const FileIdentity& identity, bool isOverwritten) {
    if (const auto named = fileSystem.Info(path); named && named->identity != identity) {
        return PurgeResult::NameTaken;
    }
    const FsStatus removed = fileSystem.Remove(path);
    if (removed != FsStatus::Ok && removed != FsStatus::NotFound) return PurgeResult::NotRemoved;
    return isOverwritten ? PurgeResult::Done : PurgeResult::NotOverwritten;
}

PurgeResult OverwriteAndRemove(FileSystem& fileSystem, RandomSource& random,
                               const std::string& path, const PurgeHooks& hooks) {
    const OpenResult opened = fileSystem.OpenForPurging(path);
    if (opened.status != FsStatus::Ok) return PurgeResult::NotOpened;
    const auto info = opened.file->Info();
    const PurgeResult obstacle = Obstacle(fileSystem, path, *opened.file, info);
    if (obstacle != PurgeResult::Done) return obstacle;
    Overwriting overwriting(random, info->lengthBytes);
    if (hooks.beforeOverwriting && !hooks.beforeOverwriting(*info, overwriting.Head())) {
        return PurgeResult::NotAllowed;
    }
    const bool isOverwritten = overwriting.Run(*opened.file, hooks.progress) == FsStatus::Ok;
    return RemoveOverwritten(fileSystem, path, info->identity, isOverwritten);
}

} // namespace

PurgeResult PurgeFile(FileSystem& fileSystem, RandomSource& random, const std::string& path,
                      PurgeMode mode, const PurgeHooks& hooks) {
    if (mode == PurgeMode::OverwriteAndDelete) {
        return OverwriteAndRemove(fileSystem, random, path, hooks);
    }
    return fileSystem.Remove(path) == FsStatus::Ok ? PurgeResult::Done : PurgeResult::NotRemoved;
}

} // namespace zr5
