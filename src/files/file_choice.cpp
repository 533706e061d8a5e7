#include "files/file_choice.h"

#include "files/forbidden_folder.h"
#include "setup/wording.h"
#include "util/chosen_file.h"
#include "util/display.h"
#include "util/paths.h"

namespace zr5 {
namespace {

constexpr const char* AnyFileFilter = "Any file | *.*";

} // namespace

std::string PathWithExtension(const std::string& path, const std::string& extension) {
    const PathParts parts = SplitPath(path);
    const std::string base = SplitName(parts.name).base;
    return parts.folder + (base.empty() ? parts.name : base) + "." + extension;
}

void SingleFileChoice::ChooseInput(const std::string& buttonCaption) {
    const OperationSetup& setup = desk_.Setup();
    const auto chosen =
        user_.PickFile({.kind = FilePicker::Kind::Open,
                        .title = "Select file to be " + VerbForm(setup.Operation, "encrypted"),
                        .filter = AnyFileFilter,
                        .startFolder = setup.Folder[InputSide]});
    if (!chosen || chosen->empty()) return;
    const std::string path = MeantPath(fileSystem_, *chosen);
    const auto target = ResolveChosen(fileSystem_, path);
    if (!target) return Refuse(path, "does not exist.", buttonCaption);
    const std::string reason = WhyNotAFile(target->kind);
    if (!reason.empty()) return Refuse(path, reason, buttonCaption);
    const PathParts parts = SplitPath(target->path);
    desk_.SetInputFile(parts.folder, parts.name);
}

std::optional<std::string> SingleFileChoice::PickOutput(FilePicker::Kind kind) {
    const OperationSetup& setup = desk_.Setup();
    const std::size_t known = setup.Folder[OutputSide].empty() ? InputSide : OutputSide;
    auto chosen = user_.PickFile(
        {.kind = kind,
         .title = "Specify output file for the " + VerbForm(setup.Operation, "encrypted") + " file",
         .filter = AnyFileFilter,
         .startFolder = setup.Folder[known],
         .asksBeforeOverwriting = kind == FilePicker::Kind::Save});
    if (chosen && chosen->empty()) chosen.reset();
    return chosen;
}

bool SingleFileChoice::ChooseOutput(const std::string& buttonCaption) {
    const auto chosen = PickOutput(FilePicker::Kind::Save);
    if (!chosen) return false;
    const std::string path = MeantPath(fileSystem_, *chosen);
    // The picker has asked about what was typed; behind an escaped name stands another file.
    return TakeOutput(path, path == *chosen ? Overwriting::Agreed : Overwriting::AskFirst,
                      buttonCaption);
}

bool SingleFileChoice::ChooseExistingOutput(const std::string& buttonCaption) {
    const auto chosen = PickOutput(FilePicker::Kind::Open);
    if (!chosen) return false;
    const std::string path = MeantPath(fileSystem_, *chosen);
    if (fileSystem_.Info(path)) return TakeOutput(path, Overwriting::Agreed, buttonCaption);
    Refuse(path, "does not exist.", buttonCaption);
    return false;
}

bool SingleFileChoice::NameOutputByExtension(const std::string& extension,
                                             const std::string& buttonCaption) {
    return TakeOutput(PathWithExtension(desk_.Setup().FilePath(InputSide), extension),
                      Overwriting::AskFirst, buttonCaption);
}

bool SingleFileChoice::TakeOutput(const std::string& path, Overwriting overwriting,
                                  const std::string& buttonCaption) {
    const OperationSetup& setup = desk_.Setup();
    const auto target = ResolveChosen(fileSystem_, path);
    const std::string& outputPath = target ? target->path : path;
    const std::string reason =
        target ? WhyNotAFile(target->kind) : WhyNotCreatable(fileSystem_, path);
    if (!reason.empty()) {
        Refuse(path, reason, buttonCaption);
        return false;
    }
    if (SameFile(fileSystem_, outputPath, setup.FilePath(InputSide))) {
        desk_.SetOutputFile(setup.Folder[InputSide], setup.FileName[InputSide]);
        return true;
    }
    if (const auto box = refusal_ ? refusal_(outputPath) : std::nullopt) {
        user_.Ask(*box);
        return false;
    }
    if (target && overwriting == Overwriting::AskFirst &&
        user_.Ask(OverwriteQuestion(DisplayName(path))) != Answer::Yes)
        return false;
    const PathParts parts = SplitPath(outputPath);
    desk_.SetOutputFile(parts.folder, parts.name);
    return true;
}

void SingleFileChoice::Refuse(const std::string& path, std::string_view reason,
                              const std::string& title) {
    user_.Ask(
        Notice(DisplayName(path) + "\r\n" + std::string(reason), title, BoxIcon::Information));
}

void FolderChoice::ChooseInput(const std::string& buttonCaption, const StopAsked& stopped) {
    const auto chosen = user_.PickFolder(
        {.title = "Specify input folder", .startFolder = desk_.Setup().Folder[InputSide]});
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
