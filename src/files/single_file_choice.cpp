#include "files/single_file_choice.h"

#include "setup/verb_form.h"
#include "util/display.h"
#include "util/paths.h"

namespace zr5 {
namespace {

constexpr const char* AnyFileFilter = "Any file | *.*";

/// Why nothing but a regular file will do; empty for a regular file.
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

std::string WhyNotOpened(FsStatus status) {
    switch (status) {
    case FsStatus::Ok:
        return {};
    case FsStatus::NotFound:
        return "does not exist.";
    case FsStatus::NotPermitted:
        return "cannot be read: permission denied.";
    case FsStatus::NotRegularFile:
        return "is not a file.";
    case FsStatus::AlreadyExists:
    case FsStatus::NoSpace:
    case FsStatus::IoError:
        return "cannot be read.";
    }
    return {};
}

} // namespace

void SingleFileChoice::ChooseInput(const std::string& buttonCaption) {
    const OperationSetup& setup = desk_.Setup();
    const auto chosen =
        user_.PickFile({.kind = FilePicker::Kind::Open,
                        .title = "Select file to be " + VerbForm(setup.Operation, "encrypted"),
                        .filter = AnyFileFilter,
                        .startFolder = setup.Folder[Input]});
    if (!chosen || chosen->empty()) return;
    const std::string path = MeantPath(*chosen);
    const auto target = Resolve(path);
    if (!target) return Refuse(path, "does not exist.", buttonCaption);
    std::string reason = WhyNotAFile(target->kind);
    if (reason.empty()) reason = WhyNotReadable(target->path);
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
    const std::string path = MeantPath(*chosen);
    const auto target = Resolve(path);
    std::string reason = target ? WhyNotAFile(target->kind) : std::string{};
    const std::string& outputPath = target ? target->path : path;
    if (reason.empty()) reason = WhyNotWritable(outputPath);
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

/// Pickers give back text; a name that is not text is typed with the escapes in which it is
/// shown.
std::string SingleFileChoice::MeantPath(const std::string& chosen) {
    if (fileSystem_.Info(chosen)) return chosen;
    std::string unescaped = NameFromDisplay(chosen);
    return fileSystem_.Info(unescaped) ? unescaped : chosen;
}

std::optional<SingleFileChoice::Target> SingleFileChoice::Resolve(const std::string& path) {
    auto info = fileSystem_.Info(path);
    if (!info) return std::nullopt;
    if (info->kind != FileKind::Link) return Target{path, info->kind};
    const auto canonical = fileSystem_.CanonicalPath(path);
    if (!canonical) return Target{path, FileKind::Link};
    info = fileSystem_.Info(*canonical);
    return Target{*canonical, info ? info->kind : FileKind::Link};
}

std::string SingleFileChoice::WhyNotReadable(const std::string& path) {
    return WhyNotOpened(fileSystem_.OpenForReading(path).status);
}

std::string SingleFileChoice::WhyNotWritable(const std::string& path) {
    if (SplitPath(path).name.empty()) return "is a folder, not a file.";
    if (!fileSystem_.FolderAcceptsFiles(path))
        return "cannot be written: no file can be made in its folder.";
    return {};
}

void SingleFileChoice::Refuse(const std::string& path, std::string_view reason,
                              const std::string& title) {
    user_.Ask(
        Notice(DisplayName(path) + "\r\n" + std::string(reason), title, BoxIcon::Information));
}

} // namespace zr5
