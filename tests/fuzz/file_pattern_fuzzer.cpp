// A name and a pattern, parted by the first line feed: matching is done in time, a name matches
// itself, what stands for any of its characters may take their place, and nothing else may.

#include "files/file_pattern.h"
#include "libs/system/text_encoding.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::string name(text.substr(0, text.find('\n')));
    const std::string_view pattern = text.substr(std::min(size, name.size() + 1));
    const bool matches = zr5::MatchesPattern(name, pattern);
    if (name.empty() || name.find_first_of("?*:\\ .") != std::string::npos) return 0;
    Require(zr5::MatchesPattern(name, name) && !zr5::MatchesPattern(name, name + "x"));
    char32_t ignored = 0;
    for (std::size_t at = 0; at < name.size();) {
        const std::size_t length = std::max<std::size_t>(1, zr5::Utf8Sequence(name, at, ignored));
        std::string other = name;
        Require(zr5::MatchesPattern(name, other.replace(at, length, "?")));
        Require(zr5::MatchesPattern(name, other.replace(at, 1, "*")));
        Require(!zr5::MatchesPattern(name, other.replace(at, 1, "*" + name + "?")));
        at += length;
    }
    const bool isLiteral = pattern.find_first_of("?* .") == std::string_view::npos;
    Require(!isLiteral || matches == (name == pattern));
    return 0;
}
