#include "util/display.h"

#include "libs/system/text_encoding.h"

#include <algorithm>
#include <optional>
#include <span>

namespace zr5 {
namespace {

struct CodePoints {
    char32_t first, last;
};

/// What a window shows as nothing or lets act on the line: control characters, the ends of lines
/// and paragraphs, and what Unicode calls default ignorable (DerivedCoreProperties.txt), among it
/// all that turns the direction of the text.
constexpr CodePoints Unseen[] = {
    {0x0000, 0x001F}, {0x007F, 0x009F},   {0x00AD, 0x00AD},   {0x034F, 0x034F},  {0x061C, 0x061C},
    {0x115F, 0x1160}, {0x17B4, 0x17B5},   {0x180B, 0x180F},   {0x200B, 0x200F},  {0x2028, 0x202E},
    {0x2060, 0x206F}, {0x3164, 0x3164},   {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF},  {0xFFA0, 0xFFA0},
    {0xFFF0, 0xFFFB}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF}};

bool CannotBeSeen(char32_t c) {
    return std::ranges::any_of(
        Unseen, [c](const CodePoints& range) { return c >= range.first && c <= range.last; });
}

void AppendEscaped(std::string& text, std::string_view bytes) {
    for (const std::byte byte : std::as_bytes(std::span(bytes))) {
        text += "\\x";
        AppendHex(text, byte, HexDigits::Upper);
    }
}

/// The byte of the escape that stands at `at`: a backslash, "x" and two hexadecimal digits.
std::optional<std::byte> EscapeAt(std::string_view text, std::size_t at) {
    if (text.substr(at, 2) != "\\x") return std::nullopt;
    return ByteFromHex(text.substr(at + 2, 2));
}

/// `name` with escapes for the bytes that are no UTF-8 and for the characters that `isEscaped`,
/// given their place and code point.
template <typename IsEscaped>
std::string Escaped(std::string_view name, IsEscaped isEscaped) {
    std::string text;
    for (std::size_t at = 0; at < name.size();) {
        char32_t codePoint = 0;
        const std::size_t length = Utf8Sequence(name, at, codePoint);
        const std::string_view bytes = name.substr(at, length == 0 ? 1 : length);
        if (length == 0 || isEscaped(at, codePoint)) {
            AppendEscaped(text, bytes);
        } else {
            text += bytes;
        }
        at += bytes.size();
    }
    return text;
}

} // namespace

std::string DisplayName(std::string_view name) {
    return Escaped(name, [](std::size_t, char32_t codePoint) { return CannotBeSeen(codePoint); });
}

std::string StorableName(std::string_view name) {
    return Escaped(name,
                   [name](std::size_t at, char32_t) { return EscapeAt(name, at).has_value(); });
}

std::string NameFromDisplay(std::string_view shown) {
    std::string name;
    for (std::size_t at = 0; at < shown.size();) {
        if (const auto byte = EscapeAt(shown, at)) {
            name += static_cast<char>(*byte);
            at += 4;
        } else {
            name += shown[at++];
        }
    }
    return name;
}

} // namespace zr5
