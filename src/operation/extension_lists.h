#pragma once

// The kinds of file that an operation treats in a way of their own, by extension.

#include <string>

namespace zr5 {

/// `extension` is lower-cased and has no dot in all of these.

/// Programs and system files, which are never encrypted in place and which anti-virus programs
/// watch (`InPlaceExcludedExtensions`).
[[nodiscard]] bool IsInPlaceExcludedExtension(const std::string& extension);

/// Documents, pictures, mail and archives: anti-virus programs may object to their purging, so
/// the user is told before.
[[nodiscard]] bool IsPurgeSensitiveExtension(const std::string& extension);

} // namespace zr5
