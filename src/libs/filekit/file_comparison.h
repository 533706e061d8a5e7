#pragma once

// Finds the first byte in which two files differ.

#include "libs/system/file_system.h"
#include "libs/system/progress.h"

#include <cstdint>
#include <string>

namespace zr5 {

/// -1 identical, the position from 1 of the first difference, or another compare_code. `progress`
/// (it may be empty) is told after each piece of the first file.
[[nodiscard]] std::int64_t CompareFiles(FileSystem& fileSystem, const std::string& first,
                                        const std::string& second,
                                        const ProgressFunction& progress);

} // namespace zr5
