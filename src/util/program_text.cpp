#include "util/program_text.h"

#include "util/display.h"
#include "util/paths.h"

#include <cstdlib>

namespace zr5 {
namespace {

constexpr std::string_view AbsentText = "~";

} // namespace

std::string ProgramTextFailure(const TextFileResult& result, std::string_view path) {
    const std::string atLine = " at line " + std::to_string(result.line) + ".";
    switch (result.status) {
    case TextFileStatus::Loaded:
        return {};
    case TextFileStatus::NothingRead:
        return "No program text was read.";
    case TextFileStatus::NotOpened:
        return "Cannot open file containing program text.\r\n" + DisplayName(path);
    case TextFileStatus::TooMuchText:
        return "Too much program text.";
    case TextFileStatus::NotRecovered:
        return "Text not recovered.";
    case TextFileStatus::EmptyFile:
        return "File is empty.";
    case TextFileStatus::NotRead:
        return "Error reading file.";
    case TextFileStatus::OutOfMemory:
        return "General memory allocation error.";
    case TextFileStatus::MissingString:
        return "Missing string" + atLine;
    case TextFileStatus::StringTooLong:
        return "String too long" + atLine;
    case TextFileStatus::Duplicate:
        return "Duplicate in program text" + atLine;
    }
    std::abort();
}

void LoadProgramText(FileKit& kit, UserPort& user, std::string_view folder,
                     std::string_view fileName) {
    const std::string path = WithTrailingSeparator(folder).append(fileName);
    const TextFileResult result = kit.lt(path);
    if (result.status == TextFileStatus::Loaded) return;
    user.Ask(Notice(ProgramTextFailure(result, path), "Program text", BoxIcon::Critical));
}

std::string GetProgramText(FileKit& kit, ProgramText text) {
    const auto found = kit.gt(static_cast<std::int16_t>(text));
    return found && *found != AbsentText ? *found : std::string{};
}

} // namespace zr5
