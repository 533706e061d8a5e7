#pragma once

// Folders that are never worked on: the system's own, and the trash.

#include "libs/system/file_system.h"
#include "setup/operation_setup.h"
#include "util/user_port.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zr5 {

/// The name under which a forbidden folder is reported, or nothing for any other. Decides by the
/// text alone, by the rules of the path's shape:
/// - Windows-shaped: a forbidden name stands from the fourth character on, whatever its case and
///   whatever follows it;
/// - else (`path` is canonical): the first components, or any component that is a trash.
[[nodiscard]] std::optional<std::string> ForbiddenFolderName(std::string_view path);

/// The same decision on the disk: a system folder is forbidden too where it is mounted a second
/// time under a name that says nothing.
class ForbiddenFolders {
  public:
    explicit ForbiddenFolders(FileSystem& fileSystem);
    /// As ForbiddenFolderName; `path` is canonical.
    [[nodiscard]] std::optional<std::string> NameOf(const std::string& path) const;

  private:
    FileSystem& fileSystem_;
    std::vector<std::pair<FileIdentity, std::string>> systemFolders_;
};

/// The name of the input folder when it is forbidden, as one from a setup file may be.
[[nodiscard]] std::optional<std::string> ForbiddenInput(const OperationSetup& setup,
                                                        FileSystem& fileSystem);

/// What a person reads when a forbidden folder is chosen.
[[nodiscard]] MessageBox ForbiddenFolderBox(const std::string& name, const std::string& title);

} // namespace zr5
