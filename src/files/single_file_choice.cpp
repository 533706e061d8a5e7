#include "files/single_file_choice.h"

#include "setup/verb_form.h"
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
                        .startFolder = setup.Folder[Input]});
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
    const std::size_t known = setup.Folder[Output].empty() ? Input : Output;
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
    return TakeOutput(PathWithExtension(desk_.Setup().FilePath(Input), extension),
                      Overwriting::AskFirst, buttonCaption);
}

bool SingleFileChoice::TakeOutput(const std::string& path, Overwriting overwriting,
                                  const std::string& buttonCaption) {
    const OperationSetup& setup = desk_.Setup();
    const auto target = ResolveChosen(fileSystem_, path);
    std::string reason = target ? WhyNotAFile(target->kind) : std::string{};
    const std::string& outputPath = target ? target->path : path;
    if (SplitPath(outputPath).name.empty()) reason = WhyNotAFile(FileKind::Folder);
    if (!reason.empty()) {
        Refuse(path, reason, buttonCaption);
        return false;
    }
    if (SameFile(fileSystem_, outputPath, setup.FilePath(Input))) {
        desk_.SetOutputFile(setup.Folder[Input], setup.FileName[Input]);
        return true;
    }
    if (target && overwriting == Overwriting::AskFirst &&
        user_.Ask(Question("Overwrite existing file " + DisplayName(path) + "?",
                           "File exists already.", BoxIcon::Question, Answer::No)) != Answer::Yes)
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

} // namespace zr5
