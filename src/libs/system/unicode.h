#pragma once

// What a plain table of letters cannot answer.

#include <cstddef>
#include <string_view>

namespace zr5 {

/// The lower-case form of a Unicode code point by the simple, language-neutral mapping of the
/// C library's UTF-8 character table, whatever the user's locale.
[[nodiscard]] char32_t LowerCase(char32_t codePoint) noexcept;

/// Length in bytes of the valid UTF-8 sequence that begins at `at`; 0 when none does. Stores
/// the code point. Overlong forms and surrogates are not valid (RFC 3629).
[[nodiscard]] std::size_t Utf8Sequence(std::string_view text, std::size_t at,
                                       char32_t& codePoint) noexcept;

/// Whether all of `text` is valid UTF-8.
[[nodiscard]] bool IsUtf8(std::string_view text) noexcept;

} // namespace zr5
