// A name and a pattern, parted by the first line feed: the matcher agrees with a table of all
// prefixes of the one against all of the other, and is done in time.

#include "files/file_pattern.h"
#include "libs/system/unicode.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Characters = std::vector<std::string>;

/// Every byte that is no UTF-8 is a character by itself.
Characters Split(std::string_view text) {
    Characters characters;
    char32_t ignored = 0;
    for (std::size_t at = 0; at < text.size(); at += characters.back().size())
        characters.emplace_back(
            text.substr(at, std::max<std::size_t>(1, zr5::Utf8Sequence(text, at, ignored))));
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
