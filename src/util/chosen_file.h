#pragma once

// What a path that came out of a file picker leads to, and the words for why it will not do.

#include "libs/system/file_system.h"
#include "util/user_port.h"

#include <optional>
#include <string>

namespace zr5 {

/// The path that the user meant. Pickers give back text; a name that is not text is typed with
/// the escapes in which it is shown, unless a file really has the name as it was typed.
[[nodiscard]] std::string MeantPath(FileSystem& fileSystem, const std::string& chosen);

/// Something that stands at a chosen path.
struct ChosenFile {
    std::string path; ///< links resolved
    FileKind kind;    ///< Link: it leads nowhere
};
/// nullopt when nothing is there.
[[nodiscard]] std::optional<ChosenFile> ResolveChosen(FileSystem& fileSystem,
                                                      const std::string& path);

/// Why nothing but a regular file will do; empty for a regular file.
[[nodiscard]] std::string WhyNotAFile(FileKind kind);
/// Asks whether a file, named as it is shown, is to be overwritten; No is the default.
[[nodiscard]] MessageBox OverwriteQuestion(const std::string& shown);

/// Why no file can be made at this path; empty when one can.
[[nodiscard]] std::string WhyNotCreatable(FileSystem& fileSystem, const std::string& path);

} // namespace zr5
