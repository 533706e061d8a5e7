#pragma once

// Small files that must not be lost by halves, such as keyfiles and saved setups: written beside
// their place and renamed into it, and read only as far as is wanted.

#include "libs/system/file_system.h"
#include "libs/system/random.h"
#include "libs/system/secret.h"

#include <cstddef>
#include <span>
#include <string>

namespace zr5 {

enum class IfThere { Replace, Refuse };

/// Writes `content` as a file that only its owner may read (0600) and returns when it is on the
/// disk under its name: it is made as another file in the same folder, flushed, renamed, and the
/// folder is flushed. On any failure nothing of it is left, and a file that was there is
/// untouched (except that one is already replaced when only the flush of the folder fails).
/// AlreadyExists when the name is taken and `ifThere` refuses that, also when it is taken
/// meanwhile; NoSpace on a full disk; NotPermitted when no file can be made there or the one
/// that is there may not be written; IoError otherwise.
[[nodiscard]] FsStatus WriteSafely(FileSystem& fileSystem, RandomSource& random,
                                   const std::string& path, std::span<const std::byte> content,
                                   IfThere ifThere);

struct FirstBytes {
    FsStatus status = FsStatus::Ok;
    SecretBytes bytes; ///< `count` of them are the file's, the rest are zero
    std::size_t count = 0;
};
/// Reads the first `most` bytes of a file, or all of a shorter one. `bytes` is always `most`
/// long and holds what was read before a failure.
[[nodiscard]] FirstBytes ReadFirstBytes(FileSystem& fileSystem, const std::string& path,
                                        std::size_t most);

} // namespace zr5
