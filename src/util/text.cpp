#include "util/text.h"

#include "libs/system/text_encoding.h"
#include "util/code_page.h"

#include <algorithm>
#include <cstdint>

namespace zr5 {
namespace {

constexpr std::u32string_view AccentedCapitals = U"ŠŸÀÁÂÃÄÅÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖØÙÚÛÜÝ";
constexpr std::u32string_view AccentedSmalls = U"šÿàáâãäåçèéêëìíîïðñòóôõöøùúûüý";
static_assert(AccentedCapitals.size() == AccentedSmalls.size());

/// Length in bytes of the character at `at`; `codePoint` stays when the byte is not UTF-8.
std::size_t CharacterLength(std::string_view text, std::size_t at, char32_t& codePoint) noexcept {
    return std::max<std::size_t>(Utf8Sequence(text, at, codePoint), 1);
}

/// Where the character after the next `count` ones begins.
std::size_t Skip(std::string_view text, std::size_t count) noexcept {
    std::size_t at = 0;
    char32_t ignored = 0;
    for (; count > 0 && at < text.size(); --count)
        at += CharacterLength(text, at, ignored);
    return at;
}

char32_t LowerCaseCharacter(char32_t codePoint) noexcept {
    const std::size_t accented = AccentedCapitals.find(codePoint);
    return accented == std::u32string_view::npos ? LowerCase(codePoint) : AccentedSmalls[accented];
}

void AppendUpperCase(std::string& text, std::string_view character) {
    const auto byte = ToCodePage1252(character);
    if (!byte || byte->size() != 1) {
        text += character;
        return;
    }
    AppendUtf8(text,
               CodePage1252Character(UpperCase1252(static_cast<std::uint8_t>(byte->front()))));
}

} // namespace

bool IsPrintableText(std::string_view bytes, std::size_t maxChars) noexcept {
    if (maxChars >= 1) bytes = bytes.substr(0, maxChars);
    return std::ranges::all_of(bytes,
                               [](char byte) { return static_cast<std::uint8_t>(byte) >= 32; });
}

std::string LowerCaseWithAccents(std::string_view text) {
    std::string lower;
    lower.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        char32_t codePoint = 0;
        const std::size_t length = Utf8Sequence(text, at, codePoint);
        if (length == 0) {
            lower += text[at++];
            continue;
        }
        AppendUtf8(lower, LowerCaseCharacter(codePoint));
        at += length;
    }
    return lower;
}

std::string TidyPath(std::string_view path) {
    const std::size_t first = Skip(path, 1);
    if (first >= path.size() || path[first] != ':') return LowerCaseWithAccents(path);
    std::string tidy;
    AppendUpperCase(tidy, path.substr(0, first));
    return tidy + LowerCaseWithAccents(path.substr(first));
}

std::string ShortenPath(std::string_view text, std::size_t n) {
    constexpr std::size_t Least = 10;
    constexpr std::size_t Head = 3;
    constexpr std::string_view Gap = "...";
    const std::size_t count = n < Least ? 0 : CharacterCount(text);
    if (count <= n) return std::string(text);
    const std::size_t tail = n - Head - Gap.size();
    std::string shortened(text.substr(0, Skip(text, Head)));
    shortened += Gap;
    return shortened.append(text.substr(Skip(text, count - tail)));
}

std::string_view Trim(std::string_view text) noexcept {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return text.substr(text.size());
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::size_t CharacterCount(std::string_view text) noexcept {
    std::size_t count = 0;
    char32_t ignored = 0;
    for (std::size_t at = 0; at < text.size(); ++count)
        at += CharacterLength(text, at, ignored);
    return count;
}

} // namespace zr5
