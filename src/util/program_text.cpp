#include "util/program_text.h"

#include "util/display.h"
#include "util/paths.h"

#include <algorithm>
#include <array>

namespace zr5 {
namespace {

constexpr std::string_view AbsentText = "~";

/// A failure in a line of the file is told as minus (offset + line number).
constexpr std::int32_t DuplicateOffset = 1500;
constexpr std::int32_t TooLongOffset = 1000;
constexpr std::int32_t MissingOffset = 500;

std::string AtLine(std::string_view what, std::int32_t code, std::int32_t offset) {
    const std::int64_t line = -(std::int64_t{code} + offset);
    return std::string(what) + " at line " + std::to_string(line) + ".";
}

} // namespace

std::string ProgramTextFailure(std::int32_t code, std::string_view path) {
    if (code < -DuplicateOffset) return AtLine("Duplicate in program text", code, DuplicateOffset);
    if (code < -TooLongOffset) return AtLine("String too long", code, TooLongOffset);
    if (code < -MissingOffset) return AtLine("Missing string", code, MissingOffset);
    switch (code) {
    case 0:
        return "No program text was read.";
    case -1:
        return "Cannot open file containing program text.\r\n" + DisplayName(path);
    case -2:
        return "Particular memory allocation error.";
    case -3:
        return "Too much program text.";
    case -4:
        return "Text not recovered.";
    case -6:
        return "File is empty.";
    case -7:
        return "Error reading file.";
    case -8:
        return "General memory allocation error.";
    default:
        return "Error " + std::to_string(code);
    }
}

void LoadProgramText(FileKit& kit, UserPort& user, std::string_view folder,
                     std::string_view fileName) {
    const std::string path = WithTrailingSeparator(folder).append(fileName);
    const std::int32_t code = kit.lt(path, 0);
    if (code > 0) return;
    user.Ask(Notice(ProgramTextFailure(code, path), "Program text", BoxIcon::Critical));
}

std::string GetProgramText(FileKit& kit, std::int16_t number) {
    std::array<char, ProgramTextBufferLength> buffer{};
    const std::int32_t length = kit.gt(number, 0, buffer, ProgramTextBufferLength, 1);
    if (length <= 0) return {};
    std::string text(buffer.data(), std::min(static_cast<std::size_t>(length), buffer.size()));
    return text == AbsentText ? std::string{} : text;
}

} // namespace zr5
