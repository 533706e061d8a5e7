#include "util/paths.h"

#include "util/text.h"

namespace zr5 {
NameParts SplitName(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos) return {std::string(name), {}, false};
    return {std::string(name.substr(0, dot)), std::string(name.substr(dot + 1)), true};
}

std::string ExtensionOf(std::string_view path) {
    return LowerCaseWithAccents(SplitName(SplitPath(path).name).extension);
}

std::string WithTrailingSeparator(std::string_view folder) {
    std::string result(folder);
    if (!folder.empty() && !IsSeparatorIn(folder, folder.back())) result += SeparatorOf(folder);
    return result;
}

bool IsFullPath(std::string_view path) noexcept {
    return path.starts_with('/') || path.starts_with("\\\\") ||
           (IsWindowsShaped(path) && path.size() > 2 && IsSeparatorIn(path, path[2]));
}

bool ClimbsUp(std::string_view path) noexcept {
    std::size_t start = 0;
    for (std::size_t end = 0; end <= path.size(); ++end) {
        if (end < path.size() && !IsSeparatorIn(path, path[end])) continue;
        if (path.substr(start, end - start) == "..") return true;
        start = end + 1;
    }
    return false;
}

bool HasForbiddenCharacter(std::string_view name, Wildcards wildcards) noexcept {
    const char* forbidden = wildcards == Wildcards::Allowed ? "\\/:<>|\"" : "\\/:<>|\"*?";
    return name.find_first_of(forbidden) != std::string_view::npos;
}

} // namespace zr5
