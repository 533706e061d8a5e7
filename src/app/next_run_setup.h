#pragma once

// Where the setup-for-next-run file and the journal of replacements lie.

#include "libs/system/file_system.h"

#include <string>

namespace zr5 {

/// The path of the setup-for-next-run file below `configFolder`, the user's folder for
/// application data (the root when it is empty). Makes the maker's folder, and `configFolder`
/// itself, when missing; where that fails the path is returned all the same, and saving there
/// will fail.
[[nodiscard]] std::string NextRunSetupPath(FileSystem& fileSystem, const std::string& configFolder);

/// The path of the journal of replacements, beside the setup-for-next-run file.
[[nodiscard]] std::string JournalPath(const std::string& nextRunSetupPath);

} // namespace zr5
