#include "libs/filekit/program_text_file.h"

#include "libs/system/text_encoding.h"

#include <charconv>
#include <new>
#include <vector>

namespace zr5 {
namespace {

constexpr std::size_t LongestText = 1023; // bytes
constexpr int MostLines = 499;
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

/// Reads one line.
TextFileStatus ParseLine(std::string_view line, ProgramTextTable& texts) {
    std::int16_t number = 0;
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), number);
    const auto digits = static_cast<std::size_t>(end - line.data());
    if (error != std::errc{} || number < 1 || digits + 1 >= line.size() || line[digits] != ' ') {
        return TextFileStatus::MissingString;
    }
    std::string text = Unescaped(line.substr(digits + 1));
    if (text.size() > LongestText) return TextFileStatus::StringTooLong;
    return texts.emplace(number, std::move(text)).second ? TextFileStatus::Loaded
                                                         : TextFileStatus::Duplicate;
}

} // namespace

TextFileResult ParseProgramTexts(std::string_view content, ProgramTextTable& texts) {
    if (content.empty()) return {TextFileStatus::EmptyFile};
    if (!IsUtf8(content)) return {TextFileStatus::NotRecovered};
    if (content.starts_with(ByteOrderMark)) content.remove_prefix(ByteOrderMark.size());
    ProgramTextTable read;
    for (int lineNumber = 1; !content.empty(); ++lineNumber) {
        if (lineNumber > MostLines) return {TextFileStatus::TooMuchText};
        const std::size_t end = content.find('\n');
        std::string_view line = content.substr(0, end);
        content.remove_prefix(end == std::string_view::npos ? content.size() : end + 1);
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (line.empty() || line.starts_with('#')) continue;
        const TextFileStatus status = ParseLine(line, read);
        if (status != TextFileStatus::Loaded) return {status, lineNumber};
    }
    if (read.empty()) return {TextFileStatus::NothingRead};
    texts = std::move(read);
    return {};
}

TextFileResult ReadProgramTextFile(FileSystem& fileSystem, const std::string& path,
                                   ProgramTextTable& texts) {
    const OpenResult file = fileSystem.OpenForReading(path);
    if (file.status != FsStatus::Ok) return {TextFileStatus::NotOpened};
    try {
        std::vector<std::byte> content(LargestFileBytes + 1);
        const ReadResult got = file.file->Read(content);
        if (got.status != FsStatus::Ok) return {TextFileStatus::NotRead};
        if (got.count > LargestFileBytes) return {TextFileStatus::TooMuchText};
        return ParseProgramTexts({reinterpret_cast<const char*>(content.data()), got.count}, texts);
    } catch (const std::bad_alloc&) {
        return {TextFileStatus::OutOfMemory};
    }
}

} // namespace zr5
