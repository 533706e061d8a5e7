#include "operation/checks.h"

#include "files/forbidden_folder.h"
#include "keys/keyfile_choice.h"
#include "operation/disk_space.h"
#include "operation/report/extension_warnings.h"
#include "operation/work_list.h"
#include "setup/reliability_condition.h"
#include "setup/wording.h"
#include "util/display.h"
#include "util/paths.h"
#include "util/program_text.h"

#include <algorithm>
#include <optional>

namespace zr5 {
namespace {

bool OutputIsInput(const OperationSetup& setup, FileSystem& fileSystem) {
    return setup.InputMode == InputSource::SingleFile &&
           setup.OutputMode == OutputTarget::SeparateOutput &&
           !setup.FileName[OutputSide].empty() &&
           SameFile(fileSystem, setup.FilePath(InputSide), setup.FilePath(OutputSide));
}

/// A box without words helps nobody: `otherwise` where there is no program-text file.
std::string TextOr(FileKit& fileKit, ProgramText wanted, const char* otherwise) {
    std::string text = GetProgramText(fileKit, wanted);
    return text.empty() ? otherwise : text;
}

std::string NothingToDoText(const OperationSetup& setup, FileKit& fileKit) {
    if (setup.IncludeSubfolders()) {
        return TextOr(fileKit, ProgramText::NoMatchInSubfolders,
                      "No files match the file pattern.");
    }
    if (setup.EffectivePattern() != AllFilesPattern) {
        return TextOr(fileKit, ProgramText::NoMatch, "No files match the file pattern.");
    }
    return "The input folder is empty.";
}

std::string TooManyText(const OperationSetup& setup, std::uint64_t files) {
    return "There are at least " + std::to_string(files) +
           " matching files\r\nin the input folder" +
           (setup.IncludeSubfolders() ? " and its subfolders" : "") +
           ".\r\nThis is greater than the maximum number \r\nof files allowed (" +
           std::to_string(setup.MaxNumFiles) + ") in a single operation.";
}

bool CanBeRead(FileSystem& fileSystem, const std::string& folder) {
    const auto canonical = fileSystem.CanonicalPath(folder);
    return canonical && fileSystem.ListFolder(*canonical, {});
}

std::optional<MessageBox> ProblemWithCount(const OperationSetup& setup, Machine& machine,
                                           const FileCount& count) {
    const std::string& folder = setup.Folder[InputSide];
    if (count.files == 0 && !CanBeRead(machine.fileSystem, folder)) {
        return Notice("Error when attempting to count files in " + DisplayName(folder) + ".",
                      "Error", BoxIcon::Exclamation);
    }
    if (count.files == 0) {
        return Notice(NothingToDoText(setup, machine.fileKit) + count.unreadableNote,
                      "Nothing to do", BoxIcon::Exclamation);
    }
    if (setup.InputMode == InputSource::FilesInAFolder &&
        count.files > static_cast<std::uint64_t>(setup.MaxNumFiles)) {
        return Notice(TooManyText(setup, count.files), "Maximum number of files exceeded",
                      BoxIcon::Exclamation);
    }
    return std::nullopt;
}

/// Nothing when there is nothing to fear, or the question whether to go on all the same.
std::optional<MessageBox> AntiVirusQuestion(const OperationSetup& setup) {
    if (setup.InputMode != InputSource::SingleFile || setup.Operation != Direction::Encrypt ||
        !IsInPlaceExcludedExtension(ExtensionOf(setup.FileName[InputSide]))) {
        return std::nullopt;
    }
    return Question("The file extension of the input file may cause any anti-virus software "
                    "present to issue a warning and may possibly halt program execution. "
                    "If any anti-virus software is present, it is recommended to disable it now."
                    "\r\n\r\nDo you wish to proceed with this operation?",
                    "Warning!", BoxIcon::Exclamation, Answer::No);
}

std::optional<MessageBox> ProblemWithKeyOrOutput(const OperationSetup& setup,
                                                 const CurrentKey& key) {
    if (!key.IsHeld()) {
        return Notice("Please specify the " + VerbForm(setup.Operation, "encryption") + " key.",
                      VerbForm(setup.Operation, "Encryption") + " key not specified");
    }
    if (setup.OutputMode == OutputTarget::SeparateOutput && setup.FileName[OutputSide].empty()) {
        return Notice("Output file not specified.", "Output file", BoxIcon::Information);
    }
    return std::nullopt;
}

/// What stands in the way of an operation whose input was counted: nothing to encrypt, or no room
/// for the result. The length of a file that cannot be read is left to the report.
std::optional<MessageBox> ProblemWithSize(const OperationSetup& setup, FileSystem& fileSystem,
                                          const FileCount& count, bool leavesOut) {
    if (!count.totalBytes) return std::nullopt;
    if (*count.totalBytes == 0) {
        return Notice("Total input filesize is 0 bytes.", "Error", BoxIcon::Exclamation);
    }
    if (setup.IsCheck()) return std::nullopt;
    const bool separate = setup.OutputMode == OutputTarget::SeparateOutput;
    // The reliability test makes an encrypted and a decrypted copy.
    const std::uint64_t workedOnBytes =
        *count.totalBytes - (leavesOut ? std::min(count.doneBytes, *count.totalBytes) : 0);
    const std::uint64_t neededBytes = workedOnBytes * (IsReliabilityTest(setup) ? 2 : 1);
    return ProblemWithSpace(fileSystem, setup.Folder[separate ? OutputSide : InputSide],
                            neededBytes);
}

} // namespace

std::optional<MessageBox> ProtectedOutputBox(const std::string& outputPath, const CurrentKey& key,
                                             const Machine& machine) {
    const auto refused = [](const char* what) {
        return Notice(std::string("The output file is ") + what +
                          "\r\nChoose a different output file.",
                      "Output file", BoxIcon::Exclamation);
    };
    if (SameFile(machine.fileSystem, outputPath, machine.executablePath)) {
        return refused("this program.");
    }
    if (IsKeyfileOf(key, machine.fileSystem, outputPath)) return refused("the current keyfile.");
    const auto folderOf = [&](const std::string& path) {
        return machine.fileSystem.IdentityOf(SplitPath(path).folder);
    };
    const auto ownFolder = folderOf(machine.ownFolder);
    if (ownFolder && folderOf(outputPath) == ownFolder) {
        return refused("in the folder of this program's own files.");
    }
    return std::nullopt;
}

std::optional<Consent> MayStart(const OperationSetup& setup, const CurrentKey& key,
                                Machine& machine, ConfirmationView& view,
                                const StopAsked& stopped) {
    UserPort& user = machine.user;
    const std::string title = PerformCaption(PurposeOf(setup));
    const auto refuse = [&](const MessageBox& box) {
        user.Ask(box);
        return std::nullopt;
    };
    if (OutputIsInput(setup, machine.fileSystem)) {
        return refuse(Notice(TextOr(machine.fileKit, ProgramText::OutputIsInput,
                                    "The output file is the input file."),
                             title, BoxIcon::Information));
    }
    if (const auto forbidden = ForbiddenInput(setup, machine)) {
        return refuse(ForbiddenFolderBox(*forbidden, title));
    }
    if (const auto question = AntiVirusQuestion(setup);
        question && user.Ask(*question) != Answer::Yes) {
        return std::nullopt;
    }
    Consent consent;
    consent.inputFolder = machine.fileSystem.IdentityOf(setup.Folder[InputSide]);
    const FileCount count = CountFiles(setup, machine, stopped);
    if (count.wasStopped || stopped()) return std::nullopt;
    if (const auto problem = ProblemWithCount(setup, machine, count)) return refuse(*problem);
    if (const auto problem = ProblemWithKeyOrOutput(setup, key)) return refuse(*problem);
    if (setup.OutputMode == OutputTarget::SeparateOutput) {
        const std::string outputPath = setup.FilePath(OutputSide);
        if (const auto box = ProtectedOutputBox(outputPath, key, machine)) return refuse(*box);
        consent.replaceable = machine.fileSystem.Info(outputPath);
    }
    if (!setup.IsCheck()) {
        const ConfirmationAnswer answer =
            view.Confirm(ConfirmationFor(setup, key, count, consent.replaceable.has_value()));
        if (answer == ConfirmationAnswer::No) return std::nullopt;
        consent.leavesOut = answer == ConfirmationAnswer::YesLeavingOut;
    }
    if (const auto problem = ProblemWithSize(setup, machine.fileSystem, count, consent.leavesOut)) {
        return refuse(*problem);
    }
    return consent;
}

} // namespace zr5
