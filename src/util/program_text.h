#pragma once

// The program's numbered texts: loaded once at start-up, fetched by number.

#include "util/machine.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace zr5 {

/// The texts that the program fetches, by their numbers in the file.
enum class ProgramText : std::int16_t {
    SameAsInputFolder = 18,
    SameAsInputFile = 47,
    SameAsInputFiles = 48,
    OutputIsInput = 50,
    NoMatchInSubfolders = 51,
    NoMatch = 52,
};

/// Fetches a text; empty when there is none.
using ProgramTextLookup = std::function<std::string(ProgramText text)>;

/// Loads the texts from `fileName` in `folder` (native bytes, with or without a separator at
/// its end). A failure is told to the user and otherwise changes nothing: every text is then
/// empty.
void LoadProgramText(FileKit& kit, UserPort& user, std::string_view folder,
                     std::string_view fileName);

/// The text, or an empty one when there is none of this number or it stands for an absent text.
[[nodiscard]] std::string GetProgramText(FileKit& kit, ProgramText text);

/// What the user reads when the texts could not be loaded from the file at `path`.
[[nodiscard]] std::string ProgramTextFailure(const TextFileResult& result, std::string_view path);

} // namespace zr5
