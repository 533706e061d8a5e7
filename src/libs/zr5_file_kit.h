#pragma once

// The file kit on the machine's own files.

#include "libs/file_kit.h"
#include "libs/file_system.h"
#include "libs/random.h"

#include <memory>

namespace zr5 {

/// The kit keeps references to both.
[[nodiscard]] std::unique_ptr<FileKit> MakeFileKit(FileSystem& fileSystem, RandomSource& random);

} // namespace zr5
