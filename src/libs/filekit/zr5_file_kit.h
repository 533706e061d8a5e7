#pragma once

// The file kit on the machine's own files.

#include "libs/filekit/file_kit.h"
#include "libs/system/file_system.h"
#include "libs/system/random.h"

#include <memory>

namespace zr5 {

/// The kit keeps references to both.
[[nodiscard]] std::unique_ptr<FileKit> MakeFileKit(FileSystem& fileSystem, RandomSource& random);

} // namespace zr5
