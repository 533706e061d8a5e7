#pragma once

// Overwrites and deletes a file: how `purge_file` does it.

#include "libs/filekit/file_kit.h"

#include <string>

namespace zr5 {

/// As `purge_file`.
[[nodiscard]] PurgeResult PurgeFile(FileSystem& fileSystem, RandomSource& random,
                                    const std::string& path, PurgeMode mode,
                                    const PurgeHooks& hooks = {});

} // namespace zr5
