#pragma once

// Owner, mode, access lists and extended attributes of one file for another: what a result gets of
// the file that it comes from.

#include "libs/system/file_system.h"

namespace zr5 {

/// As `OpenFile::CopyAttributesFrom`; both are open descriptors.
[[nodiscard]] FsStatus CopyAttributes(int from, int to);
/// As `OpenFile::TakeModeFrom`.
[[nodiscard]] FsStatus CopyModeLessMask(int from, int to);

} // namespace zr5
