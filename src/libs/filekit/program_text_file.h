#pragma once

// Reads the file of numbered program texts (docs/program-texts.md).

#include "libs/filekit/file_kit.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace zr5 {

using ProgramTextTable = std::map<std::int16_t, std::string>;

/// Fills `texts`, or leaves them as they are when the file cannot be loaded.
[[nodiscard]] TextFileResult ReadProgramTextFile(FileSystem& fileSystem, const std::string& path,
                                                 ProgramTextTable& texts);

/// The same from the content of a file.
[[nodiscard]] TextFileResult ParseProgramTexts(std::string_view content, ProgramTextTable& texts);

} // namespace zr5
