#include "files/folder_choice.h"

#include "files/forbidden_folder.h"
#include "util/display.h"
#include "util/paths.h"

namespace zr5 {

void FolderChoice::ChooseInput(const std::string& buttonCaption, const StopAsked& stopped) {
    const auto chosen = user_.PickFolder(
        {.title = "Specify input folder", .startFolder = desk_.Setup().Folder[Input]});
    if (!chosen || chosen->empty()) return;
    const std::string folder = WithTrailingSeparator(*chosen);
    const std::string judged = fileSystem_.CanonicalPath(folder).value_or(folder);
    if (const auto forbidden =
            ForbiddenFolders(fileSystem_).NameOf(WithTrailingSeparator(judged))) {
        user_.Ask(ForbiddenFolderBox(*forbidden, buttonCaption));
        return;
    }
    ConsiderateVisitor visitor(user_, stopped);
    const WalkResult found = WalkFolder(
        fileSystem_,
        {.folder = folder, .pattern = AllFilesPattern, .withSubfolders = true, .limit = 1},
        visitor);
    if (found.files > 0) {
        desk_.SetInputFolder(folder);
    } else if (!found.cutShort) {
        user_.Ask(Notice(DisplayName(folder) + " contains no files." + UnreadableNote(found),
                         "No files", BoxIcon::Information));
    }
}

} // namespace zr5
