#include "operation/interrupted_operation.h"

#include "operation/file_work.h"
#include "util/display.h"
#include "util/paths.h"
#include "util/work_shown.h"

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

/// Shows how far the work on a file is.
class MendingShown {
  public:
    MendingShown(const Machine& machine, const JournalRecord& record)
        : text_("An interrupted operation is being put in order:\r\n\r\n" +
                DisplayName(record.inputPath)),
          shown_(machine.user, machine.clock) {}

    [[nodiscard]] ProgressFunction Progress() {
        return [this](std::uint64_t done, std::uint64_t total) {
            if (shown_.IsTimeToShow()) shown_.Show({text_, done, total});
        };
    }

  private:
    std::string text_;
    WorkShown shown_;
};

/// Whether the result was made in another folder than the one that is there now; no, where it could
/// not be looked at then.
bool IsOtherFolder(FileSystem& fileSystem, const JournalRecord& record) {
    if (record.outputFolder == 0) return false;
    const std::string folder = SplitPath(record.outputPath).folder;
    const auto identity = fileSystem.IdentityOf(folder);
    return identity && (identity->inode != record.outputFolder ||
                        fileSystem.VolumeOf(folder) != record.outputVolume);
}

/// A disk is missed by the folder, or where its folder stays behind empty, by the files.
bool IsOutOfReach(FileSystem& fileSystem, const JournalRecord& record) {
    const auto isThere = [&](const std::string& path) { return fileSystem.Info(path).has_value(); };
    const auto folderIsThere = [&](const std::string& path) {
        return fileSystem.IdentityOf(SplitPath(path).folder).has_value();
    };
    if (!folderIsThere(record.outputPath) || !folderIsThere(record.inputPath)) return true;
    if (isThere(record.outputPath) || isThere(record.partPath)) return false;
    return !isThere(record.inputPath) ||
           (record.step == Step::WritingElsewhere && IsOtherFolder(fileSystem, record));
}

/// Removes the part. What was decrypted into it can be read until it is overwritten; where that
/// cannot be, it is better gone than there.
InterruptionEnd RemovePart(Machine& machine, const JournalRecord& record,
                           const ProgressFunction& progress) {
    FileKit& kit = machine.fileKit;
    PurgeResult purged = PurgeResult::NotOverwritten;
    if (!Encrypts(record)) {
        purged = kit.purge_file(record.partPath, PurgeMode::OverwriteAndDelete, {progress, {}});
        if (purged == PurgeResult::Done) return InterruptionEnd::Undone;
        if (purged == PurgeResult::NameTaken) return InterruptionEnd::LeftAlone;
    }
    if (Encrypts(record) || !HasGone(purged)) {
        purged = kit.purge_file(record.partPath, PurgeMode::DeleteOnly, {});
        if (!HasGone(purged)) return InterruptionEnd::LeftAlone;
    }
    return Encrypts(record) ? InterruptionEnd::Undone : InterruptionEnd::UndoneReadable;
}

/// Gives a result that is not to stay the name of the part again, under which it is known as this
/// program's whatever its overwriting has come to, and removes it.
InterruptionEnd RemoveResult(Machine& machine, const JournalRecord& record,
                             const ProgressFunction& progress) {
    const FsStatus renamed =
        machine.fileSystem.RenameWithoutReplacing(record.outputPath, record.partPath);
    return renamed == FsStatus::Ok ? RemovePart(machine, record, progress)
                                   : InterruptionEnd::LeftAlone;
}

/// While the result was being made nothing had touched the input, so the part under its random
/// name goes; in place the result goes, too, if it is the file that the part became.
InterruptionEnd EndWriting(Machine& machine, const JournalRecord& record) {
    FileSystem& fileSystem = machine.fileSystem;
    MendingShown shown(machine, record);
    const auto input = MarkAt(fileSystem, record.inputPath);
    const auto result = MarkAt(fileSystem, record.outputPath);
    const auto part = MarkAt(fileSystem, record.partPath);
    const bool resultIsOurs = result && *result == record.output;
    // Without the input they may be all that is left.
    if (!input && (part || result)) return InterruptionEnd::LeftAlone;
    InterruptionEnd end = InterruptionEnd::Untouched;
    if (part && result && part->inode == result->inode) {
        // Where renaming takes two steps, both may be names of one file.
        const FsStatus removed = fileSystem.Remove(record.partPath);
        end = removed == FsStatus::Ok ? InterruptionEnd::Undone : InterruptionEnd::LeftAlone;
    } else if (part) {
        end = RemovePart(machine, record, shown.Progress());
    }
    if (end == InterruptionEnd::LeftAlone) return end;
    if (record.step == Step::WritingElsewhere) {
        return resultIsOurs ? InterruptionEnd::Finished : end;
    }
    if (!result || (!resultIsOurs && part)) return end;
    if (!resultIsOurs || input != record.input) return InterruptionEnd::LeftAlone;
    return RemoveResult(machine, record, shown.Progress());
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

/// The result has its name.
InterruptionEnd EndNamed(FileSystem& fileSystem, const JournalRecord& record) {
    return fileSystem.FlushFolderOf(record.inputPath) == FsStatus::Ok
               ? InterruptionEnd::Finished
               : InterruptionEnd::NotConfirmed;
}

/// What the last step of a replacement has come to.
InterruptionEnd EndOf(Remark remark) {
    switch (remark) {
    case Remark::None:
    case Remark::NotOverwritten:
        return InterruptionEnd::Finished;
    case Remark::NotFlushed:
        return InterruptionEnd::NotConfirmed;
    case Remark::NotNoted:
    case Remark::NotWritable:
    case Remark::NotRemovable:
    case Remark::HasSeveralNames:
    case Remark::NoRoom:
    case Remark::NotNamed:
    case Remark::NotRemoved:
        return InterruptionEnd::Obstructed;
    case Remark::Changed:
    case Remark::Unreadable:
    case Remark::Vanished:
    case Remark::NameTaken:
    case Remark::OutputAppeared:
    case Remark::TooLarge:
        break;
    }
    return InterruptionEnd::LeftAlone;
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
        return EndNamed(fileSystem, record);
    }
    if (!resultIsOurs) return InterruptionEnd::LeftAlone;
    if (!input && !fileSystem.Info(record.inputPath)) {
        const bool named =
            fileSystem.RenameWithoutReplacing(record.outputPath, record.inputPath) == FsStatus::Ok;
        return named ? EndNamed(fileSystem, record) : InterruptionEnd::Obstructed;
    }
    if (!input || !IsInput(fileSystem, record, *input)) return InterruptionEnd::LeftAlone;
    ResultNote note(fileSystem, journal, record);
    MendingShown shown(machine, record);
    return EndOf(ReplaceInput(fileSystem, machine.fileKit, note, shown.Progress()));
}

} // namespace

InterruptionEnd EndInterruptedFile(Machine& machine, OperationJournal& journal) {
    JournalRecord record = journal.Last();
    if (IsOutOfReach(machine.fileSystem, record)) return InterruptionEnd::OutOfReach;
    if (IsOtherFolder(machine.fileSystem, record)) return InterruptionEnd::OtherFolder;
    return record.step == Step::Replacing ? EndReplacing(machine, journal, record)
                                          : EndWriting(machine, record);
}

void FinishInterruptedOperations(Machine& machine) {
    std::string refused;
    for (int number = 1; number <= OperationJournal::MostJournals; ++number) {
        OperationJournal journal(machine.fileSystem);
        const std::string path =
            OperationJournal::Name(OperationJournal::PathIn(machine.ownFolder), number);
        const LeftJournal left = journal.OpenLeft(path);
        if (!left.whyRefused.empty())
            refused += "\r\n\r\n" + DisplayName(path) + "\r\n" + left.whyRefused;
        if (!left.isOpen) continue;
        const JournalRecord record = journal.Last();
        if (record.step != Step::None) {
            const InterruptionEnd end = EndInterruptedFile(machine, journal);
            const Answer answer = machine.user.Ask(BoxFor(end, record, path));
            const bool wasRead = answer != Answer::Cancel; // or the program was to end meanwhile
            if (!wasRead || end == InterruptionEnd::NotConfirmed) continue;
            if (MayBeKept(end) && answer != Answer::Yes) continue;
        }
        journal.Forget(); // and so closing removes it
    }
    if (!refused.empty()) machine.user.Ask(RefusalBox(refused));
}

} // namespace zr5
