#pragma once

// The errors of a Linux system's calls in the program's own terms.

#include "libs/system/file_system.h"

#include <cerrno>

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

/// Whether a failed attribute call, which left `error` in errno, means that the disk is at fault,
/// and not merely that this file system does not know the attribute or this user may not set it.
[[nodiscard]] bool IsRealFailure(int error);

} // namespace zr5
