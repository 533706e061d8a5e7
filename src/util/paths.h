#pragma once

// The text side of paths. A path's own shape decides its rules, whatever machine the program
// runs on; nothing here looks at the disk or changes the bytes of a name.

#include <string>
#include <string_view>

namespace zr5 {

/// Begins with a letter and ":", or with two backslashes.
[[nodiscard]] bool IsWindowsShaped(std::string_view path) noexcept;

/// The separator of folder paths of this shape: "\" when Windows-shaped, else "/".
[[nodiscard]] char SeparatorOf(std::string_view path) noexcept;

/// Whether `c` ends a component of `path`: "/", and "\" too in a Windows-shaped path.
[[nodiscard]] bool IsSeparatorIn(std::string_view path, char c) noexcept;

struct PathParts {
    std::string folder; ///< ends in a separator; empty when the path has none
    std::string name;   ///< what follows the last separator
};
[[nodiscard]] PathParts SplitPath(std::string_view path);

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

enum class Wildcards { Refused, Allowed };
/// Whether `name` holds a character that no file name may have: one of "\/:<>|", the double
/// quote, or, unless they are allowed, a wildcard "*" or "?".
[[nodiscard]] bool HasForbiddenCharacter(std::string_view name, Wildcards wildcards) noexcept;

} // namespace zr5
