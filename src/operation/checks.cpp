#include "operation/checks.h"

#include "operation/work_list.h"
#include "setup/verb_form.h"
#include "util/program_text.h"

#include <optional>

namespace zr5 {
namespace {

constexpr std::int16_t OutputIsInputText = 50;
constexpr std::int16_t NoMatchInSubfoldersText = 51;
constexpr std::int16_t NoMatchText = 52;

bool OutputIsInput(const OperationSetup& setup, FileSystem& fileSystem) {
    return setup.InputMode == InputSource::SingleFile &&
           setup.OutputMode == OutputTarget::SeparateOutput && !setup.FileName[Output].empty() &&
           SameFile(fileSystem, setup.FilePath(Input), setup.FilePath(Output));
}

/// The text when nothing matches; the texts of a program-text file name the pattern.
std::string NothingToDoText(const OperationSetup& setup, FileKit& fileKit) {
    if (setup.IncludeSubfolders()) return GetProgramText(fileKit, NoMatchInSubfoldersText);
    if (setup.EffectivePattern() != AllFilesPattern) return GetProgramText(fileKit, NoMatchText);
    return "The input folder is empty.";
}

std::string TooManyText(const OperationSetup& setup, std::uint64_t files) {
    return "There are at least " + std::to_string(files) +
           " matching files\r\nin the input folder" +
           (setup.IncludeSubfolders() ? " and its subfolders" : "") +
           ".\r\nThis is greater than the maximum number \r\nof files allowed (" +
           std::to_string(setup.MaxNumFiles) + ") in a single operation.";
}

std::optional<MessageBox> ProblemWithCount(const OperationSetup& setup, FileKit& fileKit,
                                           const FileCount& count) {
    if (count.files == 0) {
        return Notice(NothingToDoText(setup, fileKit) + count.unreadableNote, "Nothing to do",
                      BoxIcon::Exclamation);
    }
    if (setup.InputMode == InputSource::FilesInAFolder &&
        count.files > static_cast<std::uint64_t>(setup.MaxNumFiles)) {
        return Notice(TooManyText(setup, count.files), "Maximum number of files exceeded",
                      BoxIcon::Exclamation);
    }
    return std::nullopt;
}

} // namespace

bool MayStart(const OperationSetup& setup, const CurrentKey& key, Machine& machine,
              ConfirmationView& view, const StopAsked& stopped) {
    UserPort& user = machine.user;
    const auto refuse = [&](const MessageBox& box) {
        user.Ask(box);
        return false;
    };
    if (OutputIsInput(setup, machine.fileSystem)) {
        return refuse(Notice(GetProgramText(machine.fileKit, OutputIsInputText),
                             PerformCaption(setup.Operation), BoxIcon::Information));
    }
    const FileCount count = CountFiles(setup, machine, stopped);
    if (stopped()) return false;
    if (const auto problem = ProblemWithCount(setup, machine.fileKit, count)) {
        return refuse(*problem);
    }
    if (!key.IsHeld()) {
        return refuse(
            Notice("Please specify the " + VerbForm(setup.Operation, "encryption") + " key.",
                   VerbForm(setup.Operation, "Encryption") + " key not specified"));
    }
    if (setup.OutputMode == OutputTarget::SeparateOutput && setup.FileName[Output].empty()) {
        return refuse(Notice("Output file not specified.", "Output file"));
    }
    return view.Confirm(ConfirmationFor(setup, key, count));
}

} // namespace zr5
