#pragma once

// The small words that follow the number and the source of the files.

#include "setup/operation_setup.h"

#include <cstdint>
#include <string>

namespace zr5 {

/// "file" for one, else "files".
[[nodiscard]] inline std::string FileWord(std::uint64_t count) {
    return count == 1 ? "file" : "files";
}

/// "Input file" or "Output file" by index, with an "s" when the input is a folder.
[[nodiscard]] inline std::string InputOutputFileWord(std::size_t index, InputSource source) {
    const std::string word = index == Input ? "Input file" : "Output file";
    return source == InputSource::FilesInAFolder ? word + "s" : word;
}

} // namespace zr5
