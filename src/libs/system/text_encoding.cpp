#include "libs/system/text_encoding.h"

#include <array>
#include <charconv>

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

void AppendUtf8(std::string& text, char32_t codePoint) {
    const auto add = [&text](char32_t byte) { text += static_cast<char>(byte); };
    const auto addTail = [&](unsigned shift) { add(0x80 | ((codePoint >> shift) & 0x3F)); };
    if (codePoint < 0x80) {
        add(codePoint);
    } else if (codePoint < 0x800) {
        add(0xC0 | (codePoint >> 6U));
        addTail(0);
    } else if (codePoint < 0x10000) {
        add(0xE0 | (codePoint >> 12U));
        addTail(6);
        addTail(0);
    } else {
        add(0xF0 | (codePoint >> 18U));
        addTail(12);
        addTail(6);
        addTail(0);
    }
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

void AppendHex(std::string& text, std::byte byte, HexDigits digits) {
    const std::string_view all =
        digits == HexDigits::Upper ? "0123456789ABCDEF" : "0123456789abcdef";
    const auto value = std::to_integer<unsigned>(byte);
    text += all[value >> 4U];
    text += all[value & 0xFU];
}

std::optional<std::byte> ByteFromHex(std::string_view digits) noexcept {
    unsigned value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    const bool isByte = digits.size() == 2 && error == std::errc{} && end == digits.data() + 2;
    if (!isByte) return std::nullopt;
    return static_cast<std::byte>(value);
}

} // namespace zr5
