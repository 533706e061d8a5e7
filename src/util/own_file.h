#pragma once

// Files that the program reads by itself, unasked, are believed only where nobody but this user can
// have written them: another user's word must neither move files nor fill in what is to be done.

#include "libs/system/file_system.h"

#include <string>

namespace zr5 {

/// Why somebody else can have made or changed what is in `folder`, as a sentence; empty when nobody
/// can: the folder is this user's, and nobody else may write to it. A link is followed.
[[nodiscard]] std::string WhyForeignFolder(FileSystem& fileSystem, const std::string& folder);

/// The same of a file: it must be a regular file with one name, of this user, that nobody else may
/// write to, in a folder of which WhyForeignFolder says nothing. `file` is what stands at `path`,
/// best as its open handle tells it.
[[nodiscard]] std::string WhyForeignFile(FileSystem& fileSystem, const std::string& path,
                                         const FileInfo& file);

} // namespace zr5
