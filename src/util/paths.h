#pragma once

// The names in paths: extensions, folders with their separator, and what no name may hold. Nothing
// here looks at the disk or changes the bytes of a name.

#include "libs/system/paths.h" // the shapes and parts of paths, which these rules go on from

#include <string>
#include <string_view>

namespace zr5 {

struct NameParts {
    std::string base;      ///< what precedes the last "."
    std::string extension; ///< what follows it; empty when the name has no "."
    bool hasDot = false;
};
/// `name` is a file name without its folder.
[[nodiscard]] NameParts SplitName(std::string_view name);

/// The extension of a file name or path, in lower case and without the dot. A name without a
/// "." has none; ".bashrc" has "bashrc".
[[nodiscard]] std::string ExtensionOf(std::string_view path);

/// `folder` with its separator at the end; an empty one (none chosen) stays empty.
[[nodiscard]] std::string WithTrailingSeparator(std::string_view folder);

/// Whether a path is the same one whatever folder the program runs in.
[[nodiscard]] bool IsFullPath(std::string_view path) noexcept;
/// Whether ".." is a component of a path.
[[nodiscard]] bool ClimbsUp(std::string_view path) noexcept;

enum class Wildcards { Refused, Allowed };
/// Whether `name` holds a character that no file name may have: one of "\/:<>|", the double
/// quote, or, unless they are allowed, a wildcard "*" or "?".
[[nodiscard]] bool HasForbiddenCharacter(std::string_view name, Wildcards wildcards) noexcept;

} // namespace zr5
