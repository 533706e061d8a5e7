#pragma once

// Code page 1252, in which keys and old setup files are written: to and from Unicode, and its
// upper case, one byte for one byte.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zr5 {

/// The byte that stands for a character; nullopt when the code page has none for it. The five
/// bytes that the code page leaves undefined (81, 8D, 8F, 90, 9D) stand for the control
/// characters of the same number, so that every byte goes there and back.
[[nodiscard]] std::optional<std::uint8_t> CodePage1252Byte(char32_t codePoint) noexcept;
[[nodiscard]] char32_t CodePage1252Character(std::uint8_t byte) noexcept;

/// nullopt when `utf8` is not valid UTF-8 or holds a character outside the code page.
[[nodiscard]] std::optional<std::string> ToCodePage1252(std::string_view utf8);
[[nodiscard]] std::string FromCodePage1252(std::string_view bytes);

/// The capital of a letter of the code page; every other byte as it is, also the small letters
/// whose capitals the code page lacks or writes with two letters (0x83, 0xB5, 0xDF).
[[nodiscard]] constexpr std::uint8_t UpperCase1252(std::uint8_t byte) noexcept {
    if (byte == 0xFF) return 0x9F;
    if (byte == 0x9A || byte == 0x9C || byte == 0x9E) return byte - 0x10;
    const bool ascii = byte >= 'a' && byte <= 'z';
    const bool accented = byte >= 0xE0 && byte <= 0xFE && byte != 0xF7;
    return ascii || accented ? byte - 0x20 : byte;
}

} // namespace zr5
