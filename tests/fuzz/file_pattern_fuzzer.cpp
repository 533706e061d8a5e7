// A name and a pattern, parted by the first line feed: the matcher agrees with a table of all
// prefixes of the one against all of the other, and is done in time.

#include "files/file_pattern.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Characters = std::vector<std::string>;

/// Well-formed UTF-8 as in table 3-7 of the Unicode standard; every other byte by itself.
std::size_t CharacterLength(std::string_view text) {
    const auto at = [&](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
    };
    const auto follows = [&](std::size_t i, unsigned low = 0x80, unsigned high = 0xBF) {
        return at(i) >= low && at(i) <= high;
    };
    const unsigned first = at(0);
    if (first >= 0xC2 && first <= 0xDF && follows(1)) return 2;
    const bool second3 = first == 0xE0   ? follows(1, 0xA0)
                         : first == 0xED ? follows(1, 0x80, 0x9F)
                                         : follows(1);
    if (first >= 0xE0 && first <= 0xEF && second3 && follows(2)) return 3;
    const bool second4 = first == 0xF0   ? follows(1, 0x90)
                         : first == 0xF4 ? follows(1, 0x80, 0x8F)
                                         : follows(1);
    if (first >= 0xF0 && first <= 0xF4 && second4 && follows(2) && follows(3)) return 4;
    return 1;
}

Characters Split(std::string_view text) {
    Characters characters;
    while (!text.empty()) {
        const std::size_t length = CharacterLength(text);
        characters.emplace_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return characters;
}

bool PartMatches(std::string_view nameText, std::string_view patternText) {
    const Characters name = Split(nameText);
    const Characters pattern = Split(patternText);
    // matches[n]: the part of the pattern so far matches the first n characters of the name.
    std::vector<bool> matches(name.size() + 1);
    matches[0] = true;
    for (const std::string& wanted : pattern) {
        std::vector<bool> next(name.size() + 1);
        for (std::size_t n = 0; n <= name.size(); ++n) {
            next[n] = wanted == "*"
                          ? matches[n] || (n > 0 && next[n - 1])
                          : n > 0 && matches[n - 1] && (wanted == "?" || wanted == name[n - 1]);
        }
        matches = std::move(next);
    }
    return matches.back();
}

std::string_view WithoutBlanks(std::string_view text) {
    while (text.starts_with(' '))
        text.remove_prefix(1);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return text;
}

bool Matches(std::string_view name, std::string_view pattern) {
    pattern = WithoutBlanks(pattern);
    if (pattern == "*.*" || pattern == "*") return true;
    if (name.find_first_of("?*:\\") != std::string_view::npos) return false;
    name = WithoutBlanks(name);
    const auto base = [](std::string_view text) { return text.substr(0, text.rfind('.')); };
    const auto extension = [](std::string_view text, std::string_view without) {
        const std::size_t dot = text.rfind('.');
        return dot == std::string_view::npos ? without : text.substr(dot + 1);
    };
    return PartMatches(base(name), base(pattern)) &&
           PartMatches(extension(name, ""), extension(pattern, "*"));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::string_view name = text.substr(0, text.find('\n'));
    const std::string_view pattern = text.substr(std::min(size, name.size() + 1));
    if (zr5::MatchesPattern(name, pattern) != Matches(name, pattern)) std::abort();
    return 0;
}
