// Any bytes as a file of program texts: a result says what was read, a refusal where and leaves
// the texts, and what was read and is written out again reads as the same.

#include "libs/filekit/program_text_file.h"
#include "libs/system/unicode.h"

#include <cstdint>
#include <cstdlib>

namespace {

using namespace zr5;

void Require(bool condition) {
    if (!condition) std::abort();
}

std::string Escaped(std::string_view text) {
    std::string line;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isBreak = text.substr(at, 2) == "\r\n";
        if (isBreak) ++at;
        if (isBreak)
            line += "\\n";
        else
            line.append(text[at] == '\\' ? 2 : 1, text[at]);
    }
    return line;
}

bool IsKnown(std::int32_t code) {
    using namespace program_text_code;
    constexpr std::int32_t Lines = 499;
    return code == NothingRead || code == EmptyFile || code == TooMuchText ||
           code == NotRecovered ||
           (code < MissingString && code >= Duplicate - Lines && code != StringTooLong &&
            code != Duplicate);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ProgramTextTable before{{7, "before"}};
    ProgramTextTable texts = before;
    const std::int32_t code = ParseProgramTexts({reinterpret_cast<const char*>(data), size}, texts);
    if (code <= 0) {
        Require(texts == before && IsKnown(code));
        return 0;
    }
    Require(static_cast<std::size_t>(code) == texts.size());
    std::string again;
    for (const auto& [number, text] : texts) {
        Require(number >= 1 && text.size() <= 1023 && IsUtf8(text));
        again += std::to_string(number) + " " + Escaped(text) + "\r\n";
    }
    ProgramTextTable second;
    Require(ParseProgramTexts(again, second) == code && second == texts);
    return 0;
}
