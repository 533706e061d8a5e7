#include "util/code_page.h"

#include "libs/system/text_encoding.h"

#include <algorithm>
#include <array>

namespace zr5 {
namespace {

constexpr std::uint8_t FirstOwn = 0x80;
/// Bytes 80 to 9F; all others are the code point of the same number.
constexpr std::array<char32_t, 32> Own{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

} // namespace

std::optional<std::uint8_t> CodePage1252Byte(char32_t codePoint) noexcept {
    const auto* own = std::ranges::find(Own, codePoint);
    if (own != Own.end()) return static_cast<std::uint8_t>(FirstOwn + (own - Own.begin()));
    if (codePoint < FirstOwn || (codePoint >= FirstOwn + Own.size() && codePoint <= 0xFF)) {
        return static_cast<std::uint8_t>(codePoint);
    }
    return std::nullopt;
}

char32_t CodePage1252Character(std::uint8_t byte) noexcept {
    const bool own = byte >= FirstOwn && byte < FirstOwn + Own.size();
    return own ? Own[byte - FirstOwn] : byte;
}

std::optional<std::string> ToCodePage1252(std::string_view utf8) {
    std::string bytes;
    for (std::size_t at = 0; at < utf8.size();) {
        char32_t codePoint = 0;
        const std::size_t length = Utf8Sequence(utf8, at, codePoint);
        const auto byte = length == 0 ? std::nullopt : CodePage1252Byte(codePoint);
        if (!byte) return std::nullopt;
        bytes += static_cast<char>(*byte);
        at += length;
    }
    return bytes;
}

std::string FromCodePage1252(std::string_view bytes) {
    std::string utf8;
    for (const char byte : bytes) {
        AppendUtf8(utf8, CodePage1252Character(static_cast<std::uint8_t>(byte)));
    }
    return utf8;
}

} // namespace zr5
