#include "util/paths.h"

#include "util/text.h"

namespace zr5 {
namespace {

/// Where the name begins: behind the last separator.
std::size_t NameStart(std::string_view path) noexcept {
    const std::size_t last = path.find_last_of(IsWindowsShaped(path) ? "\\/" : "/");
    return last == std::string_view::npos ? 0 : last + 1;
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
    const std::size_t start = NameStart(path);
    return {std::string(path.substr(0, start)), std::string(path.substr(start))};
}

NameParts SplitName(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos) return {std::string(name), {}, false};
    return {std::string(name.substr(0, dot)), std::string(name.substr(dot + 1)), true};
}

std::string ExtensionOf(std::string_view path) {
    return LowerCaseWithAccents(SplitName(path.substr(NameStart(path))).extension);
}

std::string WithTrailingSeparator(std::string_view folder) {
    std::string result(folder);
    if (!folder.empty() && !IsSeparatorIn(folder, folder.back())) result += SeparatorOf(folder);
    return result;
}

bool HasForbiddenCharacter(std::string_view name, Wildcards wildcards) noexcept {
    const char* forbidden = wildcards == Wildcards::Allowed ? "\\/:<>|\"" : "\\/:<>|\"*?";
    return name.find_first_of(forbidden) != std::string_view::npos;
}

} // namespace zr5
