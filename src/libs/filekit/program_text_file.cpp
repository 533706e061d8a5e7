#include "libs/filekit/program_text_file.h"

#include "libs/system/unicode.h"

#include <charconv>
#include <new>
#include <vector>

namespace zr5 {
namespace {

constexpr std::size_t LongestText = 1023; // bytes
constexpr std::int32_t MostLines = 499;   // more would not fit between the codes
constexpr std::size_t LargestFileBytes = std::size_t{1} << 20U;
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

/// "\n" becomes a line break and "\\" a backslash; any other backslash stands for itself.
std::string Unescaped(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::string_view pair = text.substr(at, 2);
        if (pair == "\\n") {
            result += "\r\n";
            ++at;
        } else {
            result += text[at];
            if (pair == "\\\\") ++at;
        }
    }
    return result;
}

/// Reads one line; 0 or a code without its line number.
std::int32_t ParseLine(std::string_view line, ProgramTextTable& texts) {
    std::int16_t number = 0;
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), number);
    const auto digits = static_cast<std::size_t>(end - line.data());
    if (error != std::errc{} || number < 1 || digits + 1 >= line.size() || line[digits] != ' ') {
        return program_text_code::MissingString;
    }
    std::string text = Unescaped(line.substr(digits + 1));
    if (text.size() > LongestText) return program_text_code::StringTooLong;
    return texts.emplace(number, std::move(text)).second ? 0 : program_text_code::Duplicate;
}

} // namespace

std::int32_t ParseProgramTexts(std::string_view content, ProgramTextTable& texts) {
    if (content.empty()) return program_text_code::EmptyFile;
    if (!IsUtf8(content)) return program_text_code::NotRecovered;
    if (content.starts_with(ByteOrderMark)) content.remove_prefix(ByteOrderMark.size());
    ProgramTextTable read;
    for (std::int32_t lineNumber = 1; !content.empty(); ++lineNumber) {
        if (lineNumber > MostLines) return program_text_code::TooMuchText;
        const std::size_t end = content.find('\n');
        std::string_view line = content.substr(0, end);
        content.remove_prefix(end == std::string_view::npos ? content.size() : end + 1);
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (line.empty() || line.starts_with('#')) continue;
        const std::int32_t code = ParseLine(line, read);
        if (code != 0) return code - lineNumber;
    }
    if (read.empty()) return program_text_code::NothingRead;
    texts = std::move(read);
    return static_cast<std::int32_t>(texts.size());
}

std::int32_t ReadProgramTextFile(FileSystem& fileSystem, const std::string& path,
                                 ProgramTextTable& texts) {
    const OpenResult file = fileSystem.OpenForReading(path);
    if (file.status != FsStatus::Ok) return program_text_code::NotOpened;
    try {
        std::vector<std::byte> content(LargestFileBytes + 1);
        const ReadResult got = file.file->Read(content);
        if (got.status != FsStatus::Ok) return program_text_code::NotRead;
        if (got.count > LargestFileBytes) return program_text_code::TooMuchText;
        return ParseProgramTexts({reinterpret_cast<const char*>(content.data()), got.count}, texts);
    } catch (const std::bad_alloc&) {
        return program_text_code::OutOfMemory;
    }
}

} // namespace zr5
