#include "libs/system/file_system.h"
#include "libs/system/unicode.h"

#include <filesystem>
#include <string>

namespace zr5 {
namespace {

bool IsWindowsShapedPath(const std::string& path) {
    const bool drive = path.size() >= 2 && path[1] == ':' &&
                       ((path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z'));
    return drive || path.starts_with("\\\\");
}

std::u32string LowerCased(const std::string& path) {
    std::u32string text;
    for (std::size_t at = 0; at < path.size();) {
        char32_t codePoint = 0;
        const std::size_t length = Utf8Sequence(path, at, codePoint);
        text += length == 0 ? static_cast<unsigned char>(path[at]) : LowerCase(codePoint);
        at += length == 0 ? 1 : length;
    }
    return text;
}

std::string Normalised(const std::string& path) {
    return std::filesystem::path(path).lexically_normal().native();
}

} // namespace

bool SameFile(FileSystem& fileSystem, const std::string& a, const std::string& b) {
    if (IsWindowsShapedPath(a) && IsWindowsShapedPath(b)) return LowerCased(a) == LowerCased(b);
    const auto first = fileSystem.IdentityOf(a);
    const auto second = fileSystem.IdentityOf(b);
    if (first && second) return *first == *second;
    return Normalised(a) == Normalised(b);
}

} // namespace zr5
