#pragma once

// Whether the results of an operation will find room.

#include "libs/system/file_system.h"
#include "util/user_port.h"

#include <cstdint>
#include <optional>
#include <string>

namespace zr5 {

/// The drive that holds `folder`, as a person knows it: "X:" of a Windows-shaped path, else the
/// folder at which its file system is mounted, seen from the nearest folder that is there.
[[nodiscard]] std::string DriveOf(FileSystem& fileSystem, const std::string& folder);

/// What the user reads when `totalBytes` will not go into `folder`, or when its drive cannot be
/// asked. Exactly as much as is free fits.
[[nodiscard]] std::optional<MessageBox>
ProblemWithSpace(FileSystem& fileSystem, const std::string& folder, std::uint64_t totalBytes);

} // namespace zr5
