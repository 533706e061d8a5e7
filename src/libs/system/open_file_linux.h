#pragma once

// One open file of a Linux system, and how it and the file system describe files in the program's
// own terms.

#include "libs/system/file_system.h"

#include <memory>
#include <sys/stat.h>
#include <sys/statvfs.h>

namespace zr5 {

[[nodiscard]] FileInfo InfoFrom(const struct stat& raw);

/// What this user may fill; the largest number where the file system does not tell its size.
[[nodiscard]] std::uint64_t FreeBytesOf(const struct statvfs& room);

/// A file on an open descriptor, which it closes.
[[nodiscard]] std::unique_ptr<OpenFile> MakeOpenFile(int descriptor);

} // namespace zr5
