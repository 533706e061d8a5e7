#include "util/own_file.h"

#include "util/paths.h"

namespace zr5 {

std::string WhyForeignFolder(FileSystem& fileSystem, const std::string& folder) {
    const auto info = fileSystem.Info(WithTrailingSeparator(folder)); // so a link is followed
    if (!info || info->kind != FileKind::Folder) return "Its folder cannot be looked at.";
    if (!info->isOwnedByUser) return "Its folder belongs to another user.";
    return info->isWritableByOthers ? "Other users may write to its folder." : std::string{};
}

std::string WhyForeignFile(FileSystem& fileSystem, const std::string& path, const FileInfo& file) {
    if (file.kind != FileKind::Regular) return "It is not a regular file.";
    if (!file.isOwnedByUser) return "It belongs to another user.";
    if (file.isWritableByOthers) return "Other users may write to it.";
    if (file.linkCount != 1) return "It has several names (hard links).";
    return WhyForeignFolder(fileSystem, SplitPath(path).folder);
}

} // namespace zr5
