#include "operation/confirmation.h"

#include "operation/reliability_rules.h"
#include "setup/wording.h"
#include "util/display.h"
#include "util/numbers.h"

#include <cstdlib>

namespace zr5 {
namespace {

std::string InputSentence(const OperationSetup& setup, std::uint64_t fileCount) {
    std::string text = VerbForm(setup.Operation, "Encrypting") + " " + InputDescription(setup) +
                       " (" + WithThousands(fileCount) + " " + FileWord(fileCount) + ")";
    if (setup.InputMode == InputSource::FilesInAFolder && setup.IncludeSubfolders()) {
        text += " and in all lower subfolders";
    }
    return text + ".";
}

std::string OutputSentence(const OperationSetup& setup) {
    const bool one = setup.InputMode == InputSource::SingleFile;
    const std::string files = one ? "The output file" : "The output files";
    if (setup.OutputMode == OutputTarget::OverwriteInput) {
        return files + (one ? " will have the same name as the input file"
                              " (so the input file will be overwritten)."
                            : " will have the same names as the input files"
                              " (so the input files will be overwritten).");
    }
    if (setup.FileName[InputSide] == setup.FileName[OutputSide]) {
        return files + (one ? " will have the same name" : " will have the same names") +
               ", in the folder " + DisplayName(setup.Folder[OutputSide]) + ".";
    }
    const std::string specified = files + (one ? " is specified as " : " are specified as ");
    if (setup.Folder[InputSide] == setup.Folder[OutputSide]) {
        return specified + DisplayName(setup.FileName[OutputSide]) +
               (one ? " in the same folder." : " in the same folders.");
    }
    return specified + DisplayName(setup.FilePath(OutputSide)) + ".";
}

/// "This file", "1 of these files", "All of these files".
std::string SomeOf(const FileCount& count, std::uint64_t some) {
    if (count.files == 1) return "This file";
    return (some == count.files ? "All" : WithThousands(some)) + " of these files";
}

std::string DoneSentence(Direction operation, const FileCount& count) {
    if (count.doneAlready == 0) return {};
    const std::string some = SomeOf(count, count.doneAlready);
    const bool one = count.doneAlready == 1;
    if (operation == Direction::Decrypt) {
        if (!one && count.doneAlready == count.files) return "None of these files looks encrypted.";
        return some + (one ? " does not look encrypted." : " do not look encrypted.");
    }
    return some +
           (one ? " looks as if it were encrypted already. It"
                : " look as if they were encrypted already. They") +
           " would be encrypted a second time.";
}

std::string NeverInPlaceSentence(Direction operation, const FileCount& count) {
    if (count.neverInPlace == 0) return {};
    const bool one = count.neverInPlace == 1;
    return SomeOf(count, count.neverInPlace) +
           (one ? " has an extension that is never " : " have extensions that are never ") +
           VerbForm(operation, "encrypted") + (one ? " in place. It" : " in place. They") +
           " will be left alone.";
}

/// Empty where there is nothing to say.
std::string WordFor(DiskKind kind) {
    switch (kind) {
    case DiskKind::Plain:
        return {};
    case DiskKind::Btrfs:
        return "btrfs";
    case DiskKind::Zfs:
        return "ZFS";
    case DiskKind::Bcachefs:
        return "bcachefs";
    case DiskKind::F2fs:
        return "F2FS";
    case DiskKind::Nilfs:
        return "NILFS";
    case DiskKind::Overlay:
        return "overlay";
    case DiskKind::Nfs:
        return "network: NFS";
    case DiskKind::Smb:
        return "network: SMB";
    case DiskKind::Afs:
        return "network: AFS";
    case DiskKind::Ceph:
        return "network: Ceph";
    case DiskKind::Plan9:
        return "network: 9P";
    case DiskKind::Fuse:
        return "FUSE";
    case DiskKind::Removable:
        return "removable";
    case DiskKind::SolidState:
        return "solid-state";
    }
    std::abort();
}

/// A decryption overwrites nothing that could be read.
std::string DiskSentence(const OperationSetup& setup, const FileCount& count) {
    const bool overwrites = setup.OutputMode == OutputTarget::OverwriteInput &&
                            setup.Operation == Direction::Encrypt &&
                            count.neverInPlace < count.files;
    if (!overwrites || count.disk == DiskKind::Plain) return {};
    return "Overwriting may leave older copies on this disk (" + WordFor(count.disk) + ").";
}

/// That of the files which may be left out stands last, where the box for it follows.
std::vector<std::string> Warnings(const OperationSetup& setup, const FileCount& count,
                                  bool outputIsThere) {
    std::vector<std::string> warnings{
        NeverInPlaceSentence(setup.Operation, count),
        outputIsThere ? "The output file exists already. It will be overwritten." : "",
        DiskSentence(setup, count), DoneSentence(setup.Operation, count)};
    std::erase(warnings, "");
    return warnings;
}

/// Of a single file No says the same.
std::string LeaveOutCaption(const OperationSetup& setup, const FileCount& count) {
    if (count.doneAlready == 0 || setup.InputMode == InputSource::SingleFile) return {};
    return setup.Operation == Direction::Encrypt ? "Leave out the files that are encrypted already"
                                                 : "Leave out the files that are not encrypted";
}

} // namespace

Confirmation ConfirmationFor(const OperationSetup& setup, const CurrentKey& key,
                             const FileCount& count, bool outputIsThere) {
    const std::string encryption = VerbForm(setup.Operation, "encryption");
    Confirmation confirmation;
    confirmation.operation =
        "Confirm " + encryption + " operation using key with checksum" + AfterText(key.checksum);
    confirmation.input = InputSentence(setup, count.files);
    if (IsReliabilityTest(setup)) {
        confirmation.output =
            "This is the reliability test. It works on copies in a new subfolder; "
            "the input files stay as they are.";
    } else {
        confirmation.output = OutputSentence(setup);
        confirmation.warnings = Warnings(setup, count, outputIsThere);
        confirmation.leaveOut = LeaveOutCaption(setup, count);
    }
    if (setup.InputMode == InputSource::FilesInAFolder) {
        confirmation.reminder = "It is advisable to list the files before performing "
                                "this operation, if not done already.";
    }
    confirmation.question = "Perform this " + encryption + " operation?";
    return confirmation;
}

} // namespace zr5
