#include "files/file_choice.h"

#include "files/forbidden_folder.h"
#include "files/seen_search.h"
#include "setup/wording.h"
#include "util/chosen_file.h"
#include "util/display.h"
#include "util/paths.h"

namespace zr5 {
namespace {

constexpr const char* AnyFileFilter = "Any file | *.*";
constexpr std::string_view EncryptedExtension = ".zr5";

/// The usual name for the output of `input`; empty when there is none.
std::string UsualOutputName(const std::string& input, Direction operation) {
    if (input.empty()) return {};
    if (operation == Direction::Encrypt) return input + std::string(EncryptedExtension);
    const bool isUsual =
        input.ends_with(EncryptedExtension) && input.size() > EncryptedExtension.size();
    return isUsual ? input.substr(0, input.size() - EncryptedExtension.size()) : std::string();
}

/// Why nothing but a folder will do; empty for a folder.
std::string WhyNotAFolder(const std::optional<ChosenFile>& picked) {
    if (!picked) return "does not exist.";
    if (picked->kind == FileKind::Folder) return {};
    return picked->kind == FileKind::Link ? WhyNotAFile(FileKind::Link) : "is no folder.";
}

/// Tells why what was picked is not taken.
void Refuse(UserPort& user, const std::string& path, std::string_view reason,
            const std::string& title) {
    user.Ask(Notice(DisplayName(path) + "\r\n" + std::string(reason), title, BoxIcon::Information));
}

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
    if (!target) return Refuse(user_, path, "does not exist.", buttonCaption);
    const std::string reason = WhyNotAFile(target->kind);
    if (!reason.empty()) return Refuse(user_, path, reason, buttonCaption);
    const PathParts parts = SplitPath(target->path);
    desk_.SetInputFile(parts.folder, parts.name);
}

/// Empty when there is none, or it would be too long.
std::string SingleFileChoice::UsualOutputName() const {
    const OperationSetup& setup = desk_.Setup();
    std::string name = zr5::UsualOutputName(setup.FileName[InputSide], setup.Operation);
    const bool fits = name.size() <= fileSystem_.LongestName(setup.FilePath(InputSide));
    return fits ? name : std::string();
}

std::optional<std::string> SingleFileChoice::PickOutput(FilePicker::Kind kind) {
    const OperationSetup& setup = desk_.Setup();
    const std::size_t known = setup.Folder[OutputSide].empty() ? InputSide : OutputSide;
    const bool saves = kind == FilePicker::Kind::Save;
    auto chosen = user_.PickFile(
        {.kind = kind,
         .title = "Specify output file for the " + VerbForm(setup.Operation, "encrypted") + " file",
         .filter = AnyFileFilter,
         .startFolder = setup.Folder[known],
         .asksBeforeOverwriting = saves,
         .suggestedName = saves ? DisplayName(UsualOutputName()) : std::string()});
    if (chosen && chosen->empty()) chosen.reset();
    return chosen;
}

bool SingleFileChoice::ChooseOutput(const std::string& buttonCaption) {
    const auto chosen = PickOutput(FilePicker::Kind::Save);
    if (!chosen) return false;
    std::string path = MeantPath(fileSystem_, *chosen);
    const PathParts parts = SplitPath(path);
    const std::string usual = UsualOutputName();
    if (!usual.empty() && parts.name == DisplayName(usual)) path = parts.folder + usual;
    // The picker has asked about what was typed; behind an escaped name stands another file.
    return TakeOutput(path, path == *chosen ? Overwriting::Agreed : Overwriting::AskFirst,
                      buttonCaption);
}

bool SingleFileChoice::ChooseExistingOutput(const std::string& buttonCaption) {
    const auto chosen = PickOutput(FilePicker::Kind::Open);
    if (!chosen) return false;
    const std::string path = MeantPath(fileSystem_, *chosen);
    if (fileSystem_.Info(path)) return TakeOutput(path, Overwriting::Agreed, buttonCaption);
    Refuse(user_, path, "does not exist.", buttonCaption);
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
        Refuse(user_, path, reason, buttonCaption);
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

void FolderChoice::ChooseInput(const std::string& buttonCaption, const StopAsked& stopped) {
    const auto chosen = machine_.user.PickFolder(
        {.title = "Specify input folder", .startFolder = desk_.Setup().Folder[InputSide]});
    if (!chosen || chosen->empty()) return;
    FileSystem& fileSystem = machine_.fileSystem;
    const std::string path = MeantPath(fileSystem, *chosen);
    const std::string reason = WhyNotAFolder(ResolveChosen(fileSystem, path));
    if (!reason.empty()) return Refuse(machine_.user, path, reason, buttonCaption);
    const std::string folder = WithTrailingSeparator(path);
    const std::string judged = fileSystem.CanonicalPath(folder).value_or(folder);
    if (const auto forbidden = ForbiddenFolders(machine_).NameOf(WithTrailingSeparator(judged))) {
        machine_.user.Ask(ForbiddenFolderBox(*forbidden, buttonCaption));
        return;
    }
    const WalkRequest request{.folder = folder, .pattern = AllFilesPattern, .withSubfolders = true};
    const WalkResult found = SearchForOneFile(machine_, request, stopped);
    if (stopped()) return;
    if (found.files > 0) return desk_.SetInputFolder(folder);
    const std::string text =
        found.wasStopped ? NothingFoundYetText(request, found)
                         : DisplayName(folder) + " contains no files." + UnreadableNote(found);
    machine_.user.Ask(Notice(text, "No files", BoxIcon::Information));
}

} // namespace zr5
