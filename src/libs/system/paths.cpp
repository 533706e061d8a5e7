#include "libs/system/paths.h"

#include "libs/system/text_encoding.h"

#include <filesystem>

namespace zr5 {
namespace {

bool IsContinuationByte(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
}

/// `name` cut to `longest` bytes, never inside a UTF-8 sequence. Bytes that are no UTF-8 are cut
/// anywhere.
std::string CutTo(const std::string& name, std::size_t longest) {
    if (name.size() <= longest) return name;
    constexpr std::size_t MostContinuationBytes = 3;
    std::size_t end = longest;
    while (end > 0 && longest - end <= MostContinuationBytes && IsContinuationByte(name[end])) {
        --end;
    }
    return name.substr(0, longest - end <= MostContinuationBytes ? end : longest);
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

bool IsWindowsShaped(std::string_view path) noexcept {
    if (path.starts_with("\\\\")) return true;
    if (path.size() < 2 || path[1] != ':') return false;
    return (path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z');
}

char SeparatorOf(std::string_view path) noexcept {
    return IsWindowsShaped(path) ? '\\' : '/';
}

bool IsSeparatorIn(std::string_view path, char c) noexcept {
    return c == '/' || (c == '\\' && IsWindowsShaped(path));
}

PathParts SplitPath(std::string_view path) {
    const std::size_t last = path.find_last_of(IsWindowsShaped(path) ? "\\/" : "/");
    const std::size_t name = last == std::string_view::npos ? 0 : last + 1;
    return {std::string(path.substr(0, name)), std::string(path.substr(name))};
}

std::string NumberedName(FileSystem& fileSystem, const std::string& path, std::string suffix,
                         int number) {
    if (number > 1) suffix += "-" + std::to_string(number);
    const PathParts parts = SplitPath(path);
    const std::size_t longest = fileSystem.LongestName(path);
    return parts.folder + CutTo(parts.name, longest - suffix.size()) + suffix;
}

bool SameFile(FileSystem& fileSystem, const std::string& a, const std::string& b) {
    if (IsWindowsShaped(a) && IsWindowsShaped(b)) return LowerCased(a) == LowerCased(b);
    const auto first = fileSystem.IdentityOf(a);
    const auto second = fileSystem.IdentityOf(b);
    if (first && second) return *first == *second;
    return Normalised(a) == Normalised(b);
}

} // namespace zr5
