#pragma once

// Overwrites and deletes a file. On plain disks the old content is gone then; on SSDs, in
// journals, snapshots and backups older copies can survive.

#include "libs/filekit/file_kit.h"
#include "libs/system/file_system.h"
#include "libs/system/progress.h"
#include "libs/system/random.h"

#include <cstdint>
#include <string>

namespace zr5 {

namespace purge_code {
inline constexpr std::int32_t Done = 0;
inline constexpr std::int32_t NotOpened = -4;
inline constexpr std::int32_t HasSeveralNames = -5;
inline constexpr std::int32_t NotOverwritten = -6;
inline constexpr std::int32_t NotRemoved = -7;
} // namespace purge_code

struct PurgeHooks {
    ProgressFunction progress;           ///< called after each piece
    BeforeOverwriting beforeOverwriting; ///< asked before the first
};

/// So many of the first bytes `beforeOverwriting` is told, or all of a shorter file.
inline constexpr std::size_t OverwriteHeadBytes = 32;

/// A purge_code. A file that has several names is not overwritten: its other names would lose
/// their content with it. Nor is a file deleted that has taken the overwritten one's name
/// meanwhile.
[[nodiscard]] std::int32_t PurgeFile(FileSystem& fileSystem, RandomSource& random,
                                     const std::string& path, bool overwrite, bool remove,
                                     const PurgeHooks& hooks = {});

} // namespace zr5
