#pragma once

// The cipher engine for file format 1 (docs/format.md).

#include "libs/cipher_engine.h"
#include "libs/clock.h"
#include "libs/file_system.h"
#include "libs/random.h"

#include <memory>

namespace zr5 {

/// The engine keeps references to all three.
[[nodiscard]] std::unique_ptr<CipherEngine> MakeCipherEngine(FileSystem& fileSystem, Clock& clock,
                                                             RandomSource& random);

} // namespace zr5
