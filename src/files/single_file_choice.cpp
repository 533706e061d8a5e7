#include "files/single_file_choice.h"

#include "setup/verb_form.h"
#include "util/chosen_file.h"
#include "util/display.h"
#include "util/paths.h"

namespace zr5 {
namespace {

constexpr const char* AnyFileFilter = "Any file | *.*";

} // namespace

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

void SingleFileChoice::ChooseOutput(const std::string& buttonCaption) {
    const OperationSetup& setup = desk_.Setup();
    const std::size_t known = setup.Folder[Output].empty() ? Input : Output;
    const auto chosen = user_.PickFile(
        {.kind = FilePicker::Kind::Save,
         .title = "Specify output file for the " + VerbForm(setup.Operation, "encrypted") + " file",
         .filter = AnyFileFilter,
         .startFolder = setup.Folder[known],
         .asksBeforeOverwriting = true});
    if (!chosen || chosen->empty()) return;
    const std::string path = MeantPath(fileSystem_, *chosen);
    const auto target = ResolveChosen(fileSystem_, path);
    std::string reason = target ? WhyNotAFile(target->kind) : std::string{};
    const std::string& outputPath = target ? target->path : path;
    if (SplitPath(outputPath).name.empty()) reason = WhyNotAFile(FileKind::Folder);
    if (!reason.empty()) return Refuse(path, reason, buttonCaption);
    if (SameFile(fileSystem_, outputPath, setup.FilePath(Input)))
        return desk_.SetOutputFile(setup.Folder[Input], setup.FileName[Input]);
    // The picker has asked about what was typed; behind an escaped name stands another file.
    if (target && path != *chosen &&
        user_.Ask(Question("Overwrite existing file " + DisplayName(path) + "?",
                           "File exists already.", BoxIcon::Question, Answer::No)) != Answer::Yes)
        return;
    const PathParts parts = SplitPath(outputPath);
    desk_.SetOutputFile(parts.folder, parts.name);
}

void SingleFileChoice::Refuse(const std::string& path, std::string_view reason,
                              const std::string& title) {
    user_.Ask(
        Notice(DisplayName(path) + "\r\n" + std::string(reason), title, BoxIcon::Information));
}

} // namespace zr5
