#pragma once

// Names keep their native bytes; here is the form in which a person sees them, and the way back
// from what a person typed.

#include <string>
#include <string_view>

namespace zr5 {

/// `name` as UTF-8 that a window can show in one line, in one direction and with nothing unseen in
/// it: every byte that is not part of valid UTF-8, every control character and every character that
/// shows as nothing or would turn the direction of the text is written as "\x" and two hexadecimal
/// digits a byte.
[[nodiscard]] std::string DisplayName(std::string_view name);

/// `name` as UTF-8 that can be kept in a text file: only the bytes that are not part of valid
/// UTF-8 are escaped, and each backslash that would read as an escape. `NameFromDisplay` gives
/// back every name.
[[nodiscard]] std::string StorableName(std::string_view name);

/// Undoes escapes: "\x" and two hexadecimal digits become a byte.
[[nodiscard]] std::string NameFromDisplay(std::string_view shown);

} // namespace zr5
