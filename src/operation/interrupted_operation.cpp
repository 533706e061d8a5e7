#include "operation/interrupted_operation.h"

#include "operation/replacement.h"
#include "util/display.h"

#include <span>
#include <vector>

namespace zr5 {
namespace {

using Step = JournalRecord::Step;

std::optional<FileMark> RegularFileAt(FileSystem& fileSystem, const std::string& path) {
    const auto info = fileSystem.Info(path);
    if (!info || info->kind != FileKind::Regular) return std::nullopt;
    return MarkOf(*info);
}

bool BeginsWith(FileSystem& fileSystem, const std::string& path, const std::string& head) {
    const OpenResult opened = fileSystem.OpenForReading(path);
    if (opened.status != FsStatus::Ok || head.empty()) return false;
    std::vector<std::byte> bytes(head.size());
    const ReadResult got = opened.file->Read(bytes);
    return got.status == FsStatus::Ok && got.count == bytes.size() &&
           head == std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

/// While the result was being made nothing had touched the original, so what lies beside it goes:
/// the part under its random name, and the result if it is the file that the part became.
InterruptionEnd EndWriting(FileSystem& fileSystem, const JournalRecord& record) {
    if (!fileSystem.Info(record.originalPath)) {
        // Somebody has taken it away since; perhaps the result is all that is left.
        const bool resultIsThere = RegularFileAt(fileSystem, record.resultPath).has_value();
        if (resultIsThere) return InterruptionEnd::LeftAlone;
    }
    bool removedAny = RegularFileAt(fileSystem, record.partPath) &&
                      fileSystem.Remove(record.partPath) == FsStatus::Ok;
    if (RegularFileAt(fileSystem, record.resultPath) == record.result) {
        removedAny = fileSystem.Remove(record.resultPath) == FsStatus::Ok || removedAny;
    }
    return removedAny ? InterruptionEnd::Undone : InterruptionEnd::Untouched;
}

/// Whether the file under the original's name is the original still: untouched, or overwritten by
/// this program as far as it came. Then `record.earlierHead` says how it begins.
bool IsOriginal(FileSystem& fileSystem, JournalRecord& record, const FileMark& found) {
    if (found == record.original) {
        record.earlierHead.clear();
        return true;
    }
    if (!record.encrypts || found.inode != record.original.inode ||
        found.lengthBytes != record.original.lengthBytes) {
        return false;
    }
    if (BeginsWith(fileSystem, record.originalPath, record.overwriteHead)) {
        record.earlierHead = record.overwriteHead;
        return true;
    }
    return BeginsWith(fileSystem, record.originalPath, record.earlierHead);
}

/// The result was complete and on the disk, so it is the one that stays.
InterruptionEnd EndReplacing(FileSystem& fileSystem, FileKit& fileKit, OperationJournal& journal,
                             JournalRecord& record) {
    const auto result = RegularFileAt(fileSystem, record.resultPath);
    const auto original = RegularFileAt(fileSystem, record.originalPath);
    const bool resultIsOurs = result && *result == record.result;
    if (original && *original == record.result) {
        // Renamed already; where renaming takes two steps, the first name may be left.
        if (resultIsOurs) static_cast<void>(fileSystem.Remove(record.resultPath));
        return InterruptionEnd::Finished;
    }
    if (!resultIsOurs) return InterruptionEnd::LeftAlone;
    if (!original && !fileSystem.Info(record.originalPath)) {
        const bool named = fileSystem.RenameWithoutReplacing(record.resultPath,
                                                             record.originalPath) == FsStatus::Ok;
        if (named) static_cast<void>(fileSystem.FlushFolderOf(record.originalPath));
        return named ? InterruptionEnd::Finished : InterruptionEnd::LeftAlone;
    }
    if (!original || !IsOriginal(fileSystem, record, *original)) return InterruptionEnd::LeftAlone;
    return ReplaceOriginal(fileSystem, fileKit, &journal, record) ? InterruptionEnd::Finished
                                                                  : InterruptionEnd::LeftAlone;
}

MessageBox BoxFor(InterruptionEnd end, const JournalRecord& record) {
    constexpr const char* Title = "Interrupted operation";
    const std::string encrypted = record.encrypts ? "encrypted" : "decrypted";
    const std::string opening = "Vaultline ZR5 was interrupted while this file was being " +
                                encrypted + ":\r\n\r\n" + DisplayName(record.originalPath) +
                                "\r\n\r\n";
    switch (end) {
    case InterruptionEnd::Untouched:
        return Notice(opening + "The file is as it was before.", Title, BoxIcon::Information);
    case InterruptionEnd::Undone:
        return Notice(opening + "The file is as it was before. The unfinished result beside it "
                                "has been removed.",
                      Title, BoxIcon::Information);
    case InterruptionEnd::Finished:
        return Notice(opening + "This has been completed: the file is " + encrypted + " now.",
                      Title, BoxIcon::Information);
    case InterruptionEnd::LeftAlone:
        break;
    }
    return Notice(
        opening +
            "The files have been changed since or cannot be written, so this was not completed. " +
            "Please look at both yourself; the result of the " +
            (record.encrypts ? "encryption" : "decryption") + " is, or was, in the file\r\n\r\n" +
            DisplayName(record.resultPath),
        Title, BoxIcon::Exclamation);
}

} // namespace

InterruptionEnd EndInterruptedFile(FileSystem& fileSystem, FileKit& fileKit,
                                   OperationJournal& journal) {
    JournalRecord record = journal.Last();
    return record.step == Step::Replacing ? EndReplacing(fileSystem, fileKit, journal, record)
                                          : EndWriting(fileSystem, record);
}

void FinishInterruptedOperations(FileSystem& fileSystem, FileKit& fileKit, UserPort& user,
                                 const std::string& journalPath) {
    for (int number = 1; number <= OperationJournal::MostJournals; ++number) {
        OperationJournal journal(fileSystem);
        if (!journal.OpenLeft(OperationJournal::Name(journalPath, number))) continue;
        const JournalRecord record = journal.Last();
        if (record.step != Step::None) {
            user.Ask(BoxFor(EndInterruptedFile(fileSystem, fileKit, journal), record));
        }
        static_cast<void>(journal.Note({})); // and so closing removes it
    }
}

} // namespace zr5
