#include "files/file_pattern.h"

#include "libs/system/text_encoding.h"
#include "util/paths.h"
#include "util/text.h"

#include <string>

namespace zr5 {
namespace {

constexpr std::string_view EveryName = "*.*";
constexpr std::string_view NeverMatched = "?*:\\";

/// The characters of a name; a byte that is no part of valid UTF-8 is one of its own, beyond
/// every code point.
std::u32string Characters(std::string_view text) {
    constexpr char32_t Undecodable = 0x110000;
    std::u32string characters;
    for (std::size_t at = 0; at < text.size();) {
        char32_t codePoint = 0;
        const std::size_t length = Utf8Sequence(text, at, codePoint);
        characters += length == 0 ? Undecodable + static_cast<unsigned char>(text[at]) : codePoint;
        at += length == 0 ? 1 : length;
    }
    return characters;
}

/// After a mismatch only the last "*" has to take one character more: what stood before it
/// matched the shortest way already.
bool MatchesPart(const std::u32string& name, const std::u32string& pattern) {
    std::size_t at = 0;
    std::size_t wanted = 0;
    std::size_t star = std::u32string::npos;
    std::size_t starTook = 0;
    while (at < name.size()) {
        if (wanted < pattern.size() && pattern[wanted] == U'*') {
            star = wanted++;
            starTook = at;
        } else if (wanted < pattern.size() &&
                   (pattern[wanted] == U'?' || pattern[wanted] == name[at])) {
            ++wanted;
            ++at;
        } else if (star != std::u32string::npos) {
            wanted = star + 1;
            at = ++starTook;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(U'*', wanted) == std::u32string::npos;
}

} // namespace

bool MatchesPattern(std::string_view name, std::string_view pattern) {
    pattern = Trim(pattern);
    if (pattern == EveryName || pattern == "*") return true; // without a dot: "*" and ".*"
    if (name.find_first_of(NeverMatched) != std::string_view::npos) return false;
    const NameParts nameParts = SplitName(Trim(name));
    const NameParts wanted = SplitName(pattern);
    return MatchesPart(Characters(nameParts.base), Characters(wanted.base)) &&
           MatchesPart(Characters(nameParts.extension),
                       Characters(wanted.hasDot ? wanted.extension : "*"));
}

} // namespace zr5
