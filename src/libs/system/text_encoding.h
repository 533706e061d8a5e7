#pragma once

// Characters as bytes: UTF-8, lower case beyond ASCII, and bytes as hexadecimal digits.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zr5 {

/// The lower-case form of a Unicode code point by the simple, language-neutral mapping of the
/// C library's UTF-8 character table, whatever the user's locale.
[[nodiscard]] char32_t LowerCase(char32_t codePoint) noexcept;

/// Length in bytes of the valid UTF-8 sequence that begins at `at`; 0 when none does. Stores
/// the code point. Overlong forms and surrogates are not valid (RFC 3629).
[[nodiscard]] std::size_t Utf8Sequence(std::string_view text, std::size_t at,
                                       char32_t& codePoint) noexcept;

/// Appends a code point (at most 0x10FFFF, no surrogate) to `text` as UTF-8.
void AppendUtf8(std::string& text, char32_t codePoint);

/// Whether all of `text` is valid UTF-8.
[[nodiscard]] bool IsUtf8(std::string_view text) noexcept;

enum class HexDigits { Lower, Upper };

/// Appends the two hexadecimal digits of `byte`.
void AppendHex(std::string& text, std::byte byte, HexDigits digits);

/// The byte that two hexadecimal digits stand for; nullopt when `digits` is anything else.
[[nodiscard]] std::optional<std::byte> ByteFromHex(std::string_view digits) noexcept;

} // namespace zr5
