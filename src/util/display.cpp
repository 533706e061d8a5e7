#include "util/display.h"

#include "libs/system/text_encoding.h"

#include <optional>
#include <span>

namespace zr5 {
namespace {

bool ChangesTheLine(char32_t c) {
    const bool control = c < 0x20 || (c >= 0x7F && c < 0xA0);
    const bool lineEnd = c == 0x2028 || c == 0x2029;
    const bool direction = c == 0x061C || c == 0x200E || c == 0x200F ||
                           (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
    return control || lineEnd || direction || c == 0xFEFF;
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
    return Escaped(name, [](std::size_t, char32_t codePoint) { return ChangesTheLine(codePoint); });
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
