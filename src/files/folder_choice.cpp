#include "files/folder_choice.h"

#include "files/folder_walk.h"
#include "files/forbidden_folder.h"
#include "util/display.h"
#include "util/paths.h"

namespace zr5 {
void FolderChoice::ChooseInput(const std::string& buttonCaption) {
    const auto chosen = user_.PickFolder(
        {.title = "Specify input folder", .startFolder = desk_.Setup().Folder[Input]});
    if (!chosen || chosen->empty()) return;
    const std::string folder = WithTrailingSeparator(*chosen);
    const std::string judged = fileSystem_.CanonicalPath(folder).value_or(folder);
    if (const auto forbidden = ForbiddenFolderName(WithTrailingSeparator(judged))) {
        user_.Ask(Notice("A '" + *forbidden + "' folder cannot be selected.", buttonCaption,
                         BoxIcon::Information));
        return;
    }
    if (!HoldsAFile(folder)) {
        user_.Ask(
            Notice(DisplayName(folder) + " contains no files.", "No files", BoxIcon::Information));
        return;
    }
    desk_.SetInputFolder(folder);
}

bool FolderChoice::HoldsAFile(const std::string& folder) {
    WalkVisitor visitor;
    const WalkRequest request{
        .folder = folder, .pattern = AllFilesPattern, .withSubfolders = true, .limit = 1};
    return WalkFolder(fileSystem_, request, visitor).files > 0;
}

} // namespace zr5
