#include "setup/setup_store.h"

#include "libs/system/safe_file.h"
#include "setup/setup_text.h"
#include "util/chosen_file.h"
#include "util/display.h"
#include "util/own_file.h"
#include "util/paths.h"

#include <optional>
#include <span>
#include <utility>

namespace zr5 {
namespace {

/// Far more than the longest paths take with all their escapes.
constexpr std::size_t LargestSetupFile = std::size_t{256} * 1024;

constexpr const char* OperationFileFilter = "Operation files (*.opn) | *.opn";
constexpr std::string_view OperationFileExtension = "opn";

std::optional<std::string> ReadWhole(OpenFile& file) {
    std::string content(LargestSetupFile + 1, '\0');
    const ReadResult read = file.Read(std::as_writable_bytes(std::span(content)));
    if (read.status != FsStatus::Ok || read.count > LargestSetupFile) return std::nullopt;
    content.resize(read.count);
    return content;
}

/// The file itself where `path` is a link to one.
std::string WithoutLink(FileSystem& fileSystem, const std::string& path) {
    const auto found = ResolveChosen(fileSystem, path);
    return found ? found->path : path;
}

std::string WithOperationFileExtension(const std::string& path) {
    const NameParts name = SplitName(SplitPath(path).name);
    if (!name.base.empty() && !name.extension.empty()) return path;
    const bool endsInDot = name.hasDot && name.extension.empty();
    return path + (endsInDot ? "" : ".") + std::string(OperationFileExtension);
}

} // namespace

bool SetupStore::LoadSetup(const std::string& path) {
    desk_.ResetSetup();
    const OpenResult opened =
        machine_.fileSystem.OpenForReading(WithoutLink(machine_.fileSystem, path));
    return opened.status == FsStatus::Ok && Take(*opened.file);
}

bool SetupStore::Take(OpenFile& file) {
    const auto content = ReadWhole(file);
    if (!content) return false;
    SetupReading reading = ReadSetupText(*content);
    desk_.TakeOver(std::move(reading.setup));
    if (!reading.complete) {
        desk_.RewriteLabels();
        return false;
    }
    // Overwriting needs no output in the file; the labels are to say what it means.
    const OperationSetup& setup = desk_.Setup();
    if (setup.OutputMode == OutputTarget::OverwriteInput && setup.Folder[OutputSide].empty()) {
        desk_.SelectOutputMode(OutputTarget::OverwriteInput);
    }
    return true;
}

bool SetupStore::SaveSetup(const std::string& path) {
    desk_.RewriteLabels();
    if (desk_.CheckLabels() != 0) return false;
    const auto text = WriteSetupText(desk_.Setup());
    return text &&
           WriteSafely(machine_.fileSystem, machine_.random, WithoutLink(machine_.fileSystem, path),
                       std::as_bytes(std::span(*text)), IfThere::Replace) == FsStatus::Ok;
}

void SetupStore::LoadOperationFile(const std::function<void()>& pickerClosed,
                                   const std::function<void()>& refresh) {
    const auto chosen =
        machine_.user.PickFile({.kind = FilePicker::Kind::Open,
                                .title = "Specify operation file to be loaded",
                                .filter = OperationFileFilter,
                                .startFolder = SplitPath(desk_.Setup().SetupFileName).folder});
    pickerClosed();
    if (!chosen || chosen->empty()) return;
    const std::string path = MeantPath(machine_.fileSystem, *chosen);
    if (LoadSetup(path)) {
        desk_.RewriteLabels(); // a file written by hand may show other paths than it means
        desk_.SetSetupFileName(path);
        return;
    }
    refresh();
    const auto question =
        Question("Error when attempting to load setup from file\r\n" + DisplayName(path) +
                     "\r\n\r\nDo you wish to clear the setup?",
                 "Error", BoxIcon::Exclamation);
    if (machine_.user.Ask(question) == Answer::Yes) desk_.ResetSetup();
}

void SetupStore::SaveAsOperationFile(const std::function<void()>& pickerClosed) {
    const auto chosen =
        machine_.user.PickFile({.kind = FilePicker::Kind::Save,
                                .title = "Specify operation file to be saved",
                                .filter = OperationFileFilter,
                                .startFolder = SplitPath(desk_.Setup().SetupFileName).folder});
    pickerClosed();
    if (!chosen || chosen->empty()) return;
    const std::string path = MeantPath(
        machine_.fileSystem, WithOperationFileExtension(MeantPath(machine_.fileSystem, *chosen)));
    const std::string shown = DisplayName(path);
    const auto there = ResolveChosen(machine_.fileSystem, path);
    const bool canBeFile = !there || WhyNotAFile(there->kind).empty();
    if (there && canBeFile &&
        machine_.user.Ask({"Overwrite existing file " + shown + "?", "File exists",
                           BoxIcon::Question, BoxButtons::YesNoCancel, Answer::No}) !=
            Answer::Yes) {
        return;
    }
    if (canBeFile && SaveSetup(path)) {
        desk_.SetSetupFileName(path);
    } else {
        machine_.user.Ask(Notice("Error when attempting to save setup in operation file " + shown,
                                 "Error", BoxIcon::Exclamation));
    }
}

void SetupStore::SaveForNextRun() {
    std::string reason = WhyForeignFolder(machine_.fileSystem, machine_.ownFolder);
    if (reason.empty() && SaveSetup(NextRunSetupPath())) return;
    if (!reason.empty()) reason = "\r\n" + reason + "\r\n" + DisplayName(machine_.ownFolder);
    machine_.user.Ask(Notice("Cannot save setup!" + reason, "Error", BoxIcon::Exclamation));
}

void SetupStore::LoadSetupOfLastRun() {
    FileSystem& fileSystem = machine_.fileSystem;
    const std::string path = NextRunSetupPath();
    desk_.ResetSetup();
    if (!fileSystem.Info(path)) return;
    const std::string target = WithoutLink(fileSystem, path);
    const OpenResult opened = fileSystem.OpenForReading(target);
    const auto info = opened.file ? opened.file->Info() : fileSystem.Info(target);
    std::string reason = WhyForeignFolder(fileSystem, machine_.ownFolder);
    if (reason.empty() && info && info->kind == FileKind::Regular)
        reason = WhyForeignFile(fileSystem, target, *info);
    if (!reason.empty()) {
        machine_.user.Ask(Notice("The setup for the next run was not loaded, because somebody else "
                                 "may have written it:\r\n\r\n" +
                                     DisplayName(path) + "\r\n" + reason,
                                 "Setup", BoxIcon::Exclamation));
        return;
    }
    if (!opened.file || !Take(*opened.file) || desk_.CheckLabels() != 0) desk_.ResetSetup();
}

} // namespace zr5
