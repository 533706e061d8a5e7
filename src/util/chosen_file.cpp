#include "util/chosen_file.h"

#include "util/display.h"
#include "util/paths.h"

namespace zr5 {
std::string MeantPath(FileSystem& fileSystem, const std::string& chosen) {
    if (fileSystem.Info(chosen)) return chosen;
    std::string unescaped = NameFromDisplay(chosen);
    return fileSystem.Info(unescaped) ? unescaped : chosen;
}

std::optional<ChosenFile> ResolveChosen(FileSystem& fileSystem, const std::string& path) {
    auto info = fileSystem.Info(path);
    if (!info) return std::nullopt;
    if (info->kind != FileKind::Link) return ChosenFile{path, info->kind};
    const auto canonical = fileSystem.CanonicalPath(path);
    if (!canonical) return ChosenFile{path, FileKind::Link};
    info = fileSystem.Info(*canonical);
    return ChosenFile{*canonical, info ? info->kind : FileKind::Link};
}

std::string WhyNotAFile(FileKind kind) {
    switch (kind) {
    case FileKind::Regular:
        return {};
    case FileKind::Folder:
        return "is a folder, not a file.";
    case FileKind::Link:
        return "is a link that leads nowhere.";
    case FileKind::Special:
        return "is a device, pipe or socket, not a file.";
    }
    return {};
}

MessageBox OverwriteQuestion(const std::string& shown) {
    return Question("Overwrite existing file " + shown + "?", "File exists already.",
                    BoxIcon::Question, Answer::No);
}

std::string WhyNotCreatable(FileSystem& fileSystem, const std::string& path) {
    if (SplitPath(path).name.empty()) return "is a folder, not a file.";
    if (SplitPath(path).name.size() > fileSystem.LongestName(path)) return "has too long a name.";
    if (!fileSystem.FolderAcceptsFiles(path))
        return "cannot be written: no file can be made in its folder.";
    return {};
}

} // namespace zr5
