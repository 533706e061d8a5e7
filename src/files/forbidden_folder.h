#pragma once

// Folders that are never worked on: the system's own, the trash, and this program's own.

#include "libs/system/file_system.h"
#include "setup/operation_setup.h"
#include "util/machine.h"
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
/// time under a name that says nothing. So is the program's own folder, with what is in it: a
/// journal there may name the only whole copy of a file.
class ForbiddenFolders {
  public:
    explicit ForbiddenFolders(const Machine& machine);
    /// As ForbiddenFolderName; `path` is canonical.
    [[nodiscard]] std::optional<std::string> NameOf(const std::string& path) const;

    /// The name of the program's own folder when `path` is that or lies below it.
    [[nodiscard]] std::optional<std::string> NameOfOwn(const std::string& path) const;

  private:
    FileSystem& fileSystem_;
    std::string ownFolder_; ///< canonical, with its separator; empty where there is none
    std::vector<std::pair<FileIdentity, std::string>> systemFolders_;
};

/// The name of the input folder when it is forbidden, as one from a setup file may be; of the
/// program's own folder also when a single file in it is to be overwritten.
[[nodiscard]] std::optional<std::string> ForbiddenInput(const OperationSetup& setup,
                                                        const Machine& machine);

/// What a person reads when a forbidden folder is chosen.
[[nodiscard]] MessageBox ForbiddenFolderBox(const std::string& name, const std::string& title);

} // namespace zr5
