#pragma once

// Texts: what can be printed, lower case that knows accents, the tidy and the short form of a
// path. Pure functions. Texts are UTF-8; a byte that is no part of valid UTF-8 counts as one
// character and is kept.

#include <cstddef>
#include <string>
#include <string_view>

namespace zr5 {

/// Whether none of the first `maxChars` bytes of `bytes` (0: of all of them) is below 32. The
/// characters are bytes of code page 1252; an empty text is printable.
[[nodiscard]] bool IsPrintableText(std::string_view bytes, std::size_t maxChars = 0) noexcept;

/// `text` in lower case, the same in every locale.
[[nodiscard]] std::string LowerCaseWithAccents(std::string_view text);

/// The form in which paths with drive letters are shown and compared: lower case, but a capital
/// for the drive letter of a text whose second character is ":".
[[nodiscard]] std::string TidyPath(std::string_view path);

/// A text longer than `n` characters as its first 3, "..." and its last `n` - 6 characters, when
/// `n` is at least 10; otherwise the text as it is.
[[nodiscard]] std::string ShortenPath(std::string_view text, std::size_t n);

/// `text` without the blanks at its ends. No other white space goes.
[[nodiscard]] std::string_view Trim(std::string_view text) noexcept;

/// How many characters `text` has.
[[nodiscard]] std::size_t CharacterCount(std::string_view text) noexcept;

} // namespace zr5
