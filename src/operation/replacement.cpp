#include "operation/replacement.h"

namespace zr5 {
namespace {

std::int32_t PurgeOriginal(FileKit& fileKit, OperationJournal* journal, JournalRecord& record) {
    const auto note = [&] {
        return journal == nullptr || journal->Note(record, OperationJournal::Durability::OfDisk);
    };
    if (!record.encrypts) {
        if (!note()) return PurgeFailureLimit - 1;
        return fileKit.purge_file(record.originalPath, PurgeDeleteOnly, true, false);
    }
    // What the file is overwritten with tells afterwards that it was this program.
    fileKit.SetBeforeOverwriting([&](std::span<const std::byte> firstBytes) {
        record.overwriteHead.assign(reinterpret_cast<const char*>(firstBytes.data()),
                                    firstBytes.size());
        return note();
    });
    const std::int32_t purged =
        fileKit.purge_file(record.originalPath, PurgeOverwrite, true, false);
    fileKit.SetBeforeOverwriting({});
    return purged;
}

} // namespace

bool ReplaceOriginal(FileSystem& fileSystem, FileKit& fileKit, OperationJournal* journal,
                     JournalRecord record) {
    record.step = JournalRecord::Step::Replacing;
    if (PurgeOriginal(fileKit, journal, record) < PurgeFailureLimit) return false;
    if (fileSystem.RenameWithoutReplacing(record.resultPath, record.originalPath) != FsStatus::Ok) {
        return false;
    }
    // The name is there; whether it is also on the disk changes nothing that could be mended.
    static_cast<void>(fileSystem.FlushFolderOf(record.originalPath));
    return true;
}

} // namespace zr5
