#pragma once

// Whether the bytes of a key are text that a person could have written.

#include <string_view>

namespace zr5 {

/// True when every byte up to the last one that is not NUL is a printable character of code
/// page 1252 or TAB, LF, FF or CR.
[[nodiscard]] bool KeyBytesAreText(std::string_view key);

} // namespace zr5
