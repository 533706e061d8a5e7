#pragma once

// Folders that are never worked on: the system's own, and the trash.

#include <optional>
#include <string>
#include <string_view>

namespace zr5 {

/// The name under which a forbidden folder is reported, or nothing for any other. Decides by the
/// text alone, by the rules of the path's shape:
/// - Windows-shaped: a forbidden name stands from the fourth character on, whatever its case and
///   whatever follows it;
/// - else (`path` is canonical): the first components, or any component that is a trash.
[[nodiscard]] std::optional<std::string> ForbiddenFolderName(std::string_view path);

} // namespace zr5
