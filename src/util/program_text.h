#pragma once

// The program's numbered texts: loaded once at start-up, fetched by number.

#include "libs/filekit/file_kit.h"
#include "util/user_port.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace zr5 {

/// Loads the texts from `fileName` in `folder` (native bytes, with or without a separator at
/// its end). A failure is told to the user and otherwise changes nothing: every text is then
/// empty.
void LoadProgramText(FileKit& kit, UserPort& user, std::string_view folder,
                     std::string_view fileName);

/// The text, or an empty one when there is none of this number or it stands for an absent text.
[[nodiscard]] std::string GetProgramText(FileKit& kit, std::int16_t number);

/// What the user reads for a result of loading of 0 or less; `path` is the file.
[[nodiscard]] std::string ProgramTextFailure(std::int32_t code, std::string_view path);

} // namespace zr5
