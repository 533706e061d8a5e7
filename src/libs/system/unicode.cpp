#include "libs/system/unicode.h"

#include <array>
#include <cstdint>

namespace zr5 {

std::size_t Utf8Sequence(std::string_view text, std::size_t at, char32_t& codePoint) noexcept {
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const std::uint8_t lead = byte(at);
    if (lead < 0x80) {
        codePoint = lead;
        return 1;
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || at + length > text.size()) return 0;
    char32_t value = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xC0U) != 0x80) return 0;
        value = (value << 6U) | (byte(at + i) & 0x3FU);
    }
    constexpr std::array<char32_t, 5> Least{0, 0, 0x80, 0x800, 0x10000};
    if (value < Least[length] || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) return 0;
    codePoint = value;
    return length;
}

bool IsUtf8(std::string_view text) noexcept {
    for (std::size_t at = 0; at < text.size();) {
        char32_t codePoint = 0;
        const std::size_t length = Utf8Sequence(text, at, codePoint);
        if (length == 0) return false;
        at += length;
    }
    return true;
}

} // namespace zr5
