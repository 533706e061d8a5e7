#pragma once

// What the text of a path says: its shape, its parts, and whether another path leads to the same
// file. A path's own shape decides its rules, whatever machine the program runs on.

#include "libs/system/file_system.h"

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

/// `path` and `suffix`, with "-2", "-3" … after it for numbers above 1. Where the folder accepts no
/// name so long, the end of the name before the suffix is cut off, between characters of UTF-8.
[[nodiscard]] std::string NumberedName(FileSystem& fileSystem, const std::string& path,
                                       std::string suffix, int number);

/// Whether two paths lead to one file: Windows-shaped paths by their lower-cased text; others
/// by identity when both exist (so that links are seen through), else by the normalised path.
[[nodiscard]] bool SameFile(FileSystem& fileSystem, const std::string& a, const std::string& b);

} // namespace zr5
