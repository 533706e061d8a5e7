#pragma once

// The one question about letters that a plain table cannot answer.

namespace zr5 {

/// The lower-case form of a Unicode code point by the simple, language-neutral mapping of the
/// C library's UTF-8 character table, whatever the user's locale.
[[nodiscard]] char32_t LowerCase(char32_t codePoint) noexcept;

} // namespace zr5
