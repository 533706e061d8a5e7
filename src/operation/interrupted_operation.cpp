#include "operation/interrupted_operation.h"

#include "operation/file_work.h"
#include "util/display.h"
#include "util/paths.h"

#include <span>
#include <vector>

namespace zr5 {
namespace {

using Step = JournalRecord::Step;

bool Encrypts(const JournalRecord& record) {
    return record.direction == Direction::Encrypt;
}

bool BeginsWith(FileSystem& fileSystem, const std::string& path, const std::string& head) {
    const OpenResult opened = fileSystem.OpenForReading(path);
    if (opened.status != FsStatus::Ok || head.empty()) return false;
    std::vector<std::byte> bytes(head.size());
    const ReadResult got = opened.file->Read(bytes);
    return got.status == FsStatus::Ok && got.count == bytes.size() &&
           head == std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

/// A disk is missed by the folder, or where its folder stays behind empty, by the files.
bool IsOutOfReach(FileSystem& fileSystem, const JournalRecord& record) {
    const auto isThere = [&](const std::string& path) { return fileSystem.Info(path).has_value(); };
    const auto folderOf = [&](const std::string& path) {
        return fileSystem.IdentityOf(SplitPath(path).folder);
    };
    const auto outputFolder = folderOf(record.outputPath);
    if (!outputFolder || !folderOf(record.inputPath)) return true;
    if (isThere(record.outputPath) || isThere(record.partPath)) return false;
    return !isThere(record.inputPath) ||
           (record.step == Step::WritingElsewhere && outputFolder->inode != record.outputFolder);
}

/// While the result was being made nothing had touched the input, so the part under its random
/// name goes; in place the result goes, too, if it is the file that the part became.
InterruptionEnd EndWriting(FileSystem& fileSystem, const JournalRecord& record) {
    const auto input = MarkAt(fileSystem, record.inputPath);
    const auto result = MarkAt(fileSystem, record.outputPath);
    const bool resultIsOurs = result && *result == record.output;
    const bool partIsThere = MarkAt(fileSystem, record.partPath).has_value();
    // Without the input they may be all that is left.
    if (!input && (partIsThere || result)) return InterruptionEnd::LeftAlone;
    if (partIsThere && fileSystem.Remove(record.partPath) != FsStatus::Ok) {
        return InterruptionEnd::LeftAlone;
    }
    if (record.step == Step::WritingElsewhere) {
        if (resultIsOurs) return InterruptionEnd::Finished;
    } else if (result && (resultIsOurs || !partIsThere)) {
        const bool removed = resultIsOurs && input == record.input &&
                             fileSystem.Remove(record.outputPath) == FsStatus::Ok;
        return removed ? InterruptionEnd::Undone : InterruptionEnd::LeftAlone;
    }
    return partIsThere ? InterruptionEnd::Undone : InterruptionEnd::Untouched;
}

/// Whether the file under the input's name is the input still: untouched, or overwritten by
/// this program as far as it came. Then `record.earlierHead` says how it begins.
bool IsInput(FileSystem& fileSystem, JournalRecord& record, const FileMark& found) {
    if (found == record.input) {
        record.earlierHead.clear();
        return true;
    }
    if (!Encrypts(record) || !found.IsSameFileAs(record.input)) return false;
    if (BeginsWith(fileSystem, record.inputPath, record.overwriteHead)) {
        record.earlierHead = record.overwriteHead;
        return true;
    }
    return BeginsWith(fileSystem, record.inputPath, record.earlierHead);
}

/// The result was complete and on the disk, so it is the one that stays.
InterruptionEnd EndReplacing(Machine& machine, OperationJournal& journal, JournalRecord& record) {
    FileSystem& fileSystem = machine.fileSystem;
    const auto result = MarkAt(fileSystem, record.outputPath);
    const auto input = MarkAt(fileSystem, record.inputPath);
    const bool resultIsOurs = result && *result == record.output;
    if (input && *input == record.output) {
        // Renamed already; where renaming takes two steps, the first name may be left.
        if (resultIsOurs) static_cast<void>(fileSystem.Remove(record.outputPath));
        return InterruptionEnd::Finished;
    }
    if (!resultIsOurs) return InterruptionEnd::LeftAlone;
    if (!input && !fileSystem.Info(record.inputPath)) {
        const bool named =
            fileSystem.RenameWithoutReplacing(record.outputPath, record.inputPath) == FsStatus::Ok;
        if (named) static_cast<void>(fileSystem.FlushFolderOf(record.inputPath));
        return named ? InterruptionEnd::Finished : InterruptionEnd::LeftAlone;
    }
    if (!input || !IsInput(fileSystem, record, *input)) return InterruptionEnd::LeftAlone;
    ResultNote note(fileSystem, journal, record);
    return HasName(ReplaceInput(fileSystem, machine.fileKit, note)) ? InterruptionEnd::Finished
                                                                    : InterruptionEnd::LeftAlone;
}

std::string WhatBecameOf(InterruptionEnd end, const JournalRecord& record) {
    const bool inPlace = record.step != Step::WritingElsewhere;
    const std::string result = DisplayName(record.outputPath);
    std::string untouched = "The program has not touched the file.";
    switch (end) {
    case InterruptionEnd::Untouched:
        return untouched;
    case InterruptionEnd::Undone:
        if (inPlace) return untouched + " The unfinished result beside it has been removed.";
        return untouched + " The unfinished result has been removed from the folder\r\n\r\n" +
               DisplayName(SplitPath(record.partPath).folder);
    case InterruptionEnd::Finished:
        if (inPlace) {
            return std::string("This has been completed: the file is ") +
                   (Encrypts(record) ? "encrypted" : "decrypted") + " now.";
        }
        if (Encrypts(record)) return untouched + " Its encryption is complete, in\r\n\r\n" + result;
        return untouched + " The result of the decryption is in\r\n\r\n" + result +
               "\r\n\r\nBut the report is lost that would say whether anything of the file was "
               "damaged: please decrypt it again.";
    case InterruptionEnd::LeftAlone: {
        const std::string part =
            record.step == Step::Replacing ? "" : " or in\r\n\r\n" + DisplayName(record.partPath);
        return std::string(
                   "The files may have been changed since, or cannot be written, so this was "
                   "not completed. Please look at both yourself; the result of the ") +
               (Encrypts(record) ? "encryption" : "decryption") +
               " is, or was, in the file\r\n\r\n" + result + part;
    }
    case InterruptionEnd::OutOfReach:
        break;
    }
    return "Not all of it can be found now. If it is on a disk that is not connected, answer No, "
           "connect the disk and start the program again.\r\n\r\nForget it? " +
           (record.step == Step::Replacing
                ? "Its result, which may be the only whole copy, then stays in\r\n\r\n" + result
                : "An unfinished result may then be left beside\r\n\r\n" + result);
}

MessageBox BoxFor(InterruptionEnd end, const JournalRecord& record) {
    constexpr const char* Title = "Interrupted operation";
    std::string text = "Vaultline ZR5 was interrupted while this file was being ";
    text += Encrypts(record) ? "encrypted" : "decrypted";
    text += ":\r\n\r\n" + DisplayName(record.inputPath) + "\r\n\r\n";
    text += WhatBecameOf(end, record);
    if (end == InterruptionEnd::OutOfReach) {
        return Question(std::move(text), Title, BoxIcon::Exclamation, Answer::No);
    }
    return Notice(std::move(text), Title,
                  end == InterruptionEnd::LeftAlone ? BoxIcon::Exclamation : BoxIcon::Information);
}

} // namespace

InterruptionEnd EndInterruptedFile(Machine& machine, OperationJournal& journal) {
    JournalRecord record = journal.Last();
    if (IsOutOfReach(machine.fileSystem, record)) return InterruptionEnd::OutOfReach;
    return record.step == Step::Replacing ? EndReplacing(machine, journal, record)
                                          : EndWriting(machine.fileSystem, record);
}

void FinishInterruptedOperations(Machine& machine) {
    for (int number = 1; number <= OperationJournal::MostJournals; ++number) {
        OperationJournal journal(machine.fileSystem);
        const std::string path = OperationJournal::PathIn(machine.ownFolder);
        if (!journal.OpenLeft(OperationJournal::Name(path, number))) continue;
        const JournalRecord record = journal.Last();
        if (record.step != Step::None) {
            const InterruptionEnd end = EndInterruptedFile(machine, journal);
            const Answer answer = machine.user.Ask(BoxFor(end, record));
            if (end == InterruptionEnd::OutOfReach && answer != Answer::Yes) continue;
        }
        journal.Forget(); // and so closing removes it
    }
}

} // namespace zr5
