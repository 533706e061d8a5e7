#pragma once

// Reads the file of numbered program texts (docs/program-texts.md).

#include "libs/system/file_system.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace zr5 {

/// Why a program-text file was refused; where a line is at fault, its number is subtracted from
/// the code.
namespace program_text_code {
inline constexpr std::int32_t NothingRead = 0;
inline constexpr std::int32_t NotOpened = -1;
inline constexpr std::int32_t TooMuchText = -3;
inline constexpr std::int32_t NotRecovered = -4;
inline constexpr std::int32_t EmptyFile = -6;
inline constexpr std::int32_t NotRead = -7;
inline constexpr std::int32_t OutOfMemory = -8;
inline constexpr std::int32_t MissingString = -500;
inline constexpr std::int32_t StringTooLong = -1000;
inline constexpr std::int32_t Duplicate = -1500;
} // namespace program_text_code

using ProgramTextTable = std::map<std::int16_t, std::string>;

/// Fills `texts`. Above 0: how many texts were read; else a program_text_code, and `texts` stays.
[[nodiscard]] std::int32_t ReadProgramTextFile(FileSystem& fileSystem, const std::string& path,
                                               ProgramTextTable& texts);

/// The same from the content of a file.
[[nodiscard]] std::int32_t ParseProgramTexts(std::string_view content, ProgramTextTable& texts);

} // namespace zr5
