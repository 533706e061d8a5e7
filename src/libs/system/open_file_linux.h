#pragma once

// One open file of a Linux system, and what its calls have in common with those of the file
// system: their errors and their descriptions of files in the program's own terms.

#include "libs/system/file_system.h"

#include <cerrno>
#include <memory>
#include <sys/stat.h>
#include <sys/statvfs.h>

namespace zr5 {

/// What a value of errno means.
[[nodiscard]] FsStatus StatusOf(int error);

/// Of a call that says by a negative result that it failed.
[[nodiscard]] inline FsStatus StatusOfCall(long result) {
    return result < 0 ? StatusOf(errno) : FsStatus::Ok;
}

/// Repeats a call that a signal interrupted.
template <typename Call>
auto Retrying(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

[[nodiscard]] FileInfo InfoFrom(const struct stat& raw);

/// What this user may fill; the largest number where the file system does not tell its size.
[[nodiscard]] std::uint64_t FreeBytesOf(const struct statvfs& room);

/// A file on an open descriptor, which it closes.
[[nodiscard]] std::unique_ptr<OpenFile> MakeOpenFile(int descriptor);

} // namespace zr5
