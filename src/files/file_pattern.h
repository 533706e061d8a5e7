#pragma once

// Which names a file pattern means.

#include <string_view>

namespace zr5 {

/// Whether a file name (without its folder) matches a pattern. "*.*" matches every name. Else a
/// name that holds "?", "*", ":" or "\" matches nothing, blanks at the ends of name and pattern do
/// not count, both are split at their last ".", and base and extension must each match: "*" is any
/// run of characters, "?" exactly one, everything else itself, case included. A pattern without
/// "." stands for itself and any extension. Takes time proportional to the product of the lengths
/// at most.
[[nodiscard]] bool MatchesPattern(std::string_view name, std::string_view pattern);

} // namespace zr5
