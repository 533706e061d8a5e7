#pragma once

// The cipher engine for file format 1 (docs/format.md).

#include "libs/cipher/cipher_engine.h"
#include "libs/system/clock.h"
#include "libs/system/file_system.h"
#include "libs/system/random.h"

#include <memory>
#include <string>

namespace zr5 {

/// The engine keeps references to all three.
[[nodiscard]] std::unique_ptr<CipherEngine> MakeCipherEngine(FileSystem& fileSystem, Clock& clock,
                                                             RandomSource& random);

/// Whether a file begins like one that this engine has encrypted. No proof, but other files do
/// not begin so in practice.
[[nodiscard]] bool BeginsLikeEncrypted(FileSystem& fileSystem, const std::string& path);

} // namespace zr5
