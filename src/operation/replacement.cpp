#include "operation/replacement.h"

namespace zr5 {
namespace {

/// Whether `file` is the original, as it was read or as an interrupted run has overwritten it.
bool IsStillOriginal(const FileInfo& file, const JournalRecord& record) {
    const FileMark mark = MarkOf(file);
    return record.earlierHead.empty() ? mark == record.original
                                      : mark.IsSameFileAs(record.original);
}

/// Has the file kit ask before it overwrites, while it lives.
class AskedBeforeOverwriting {
  public:
    AskedBeforeOverwriting(FileKit& fileKit, BeforeOverwriting ask) : fileKit_(fileKit) {
        fileKit_.SetBeforeOverwriting(std::move(ask));
    }
    ~AskedBeforeOverwriting() { fileKit_.SetBeforeOverwriting({}); }
    AskedBeforeOverwriting(const AskedBeforeOverwriting&) = delete;
    AskedBeforeOverwriting& operator=(const AskedBeforeOverwriting&) = delete;

  private:
    FileKit& fileKit_;
};

std::int32_t PurgeOriginal(FileSystem& fileSystem, FileKit& fileKit, OperationJournal* journal,
                           JournalRecord& record) {
    const auto note = [&] {
        return journal == nullptr || journal->Note(record, OperationJournal::Durability::OfDisk);
    };
    constexpr std::int32_t Refused = PurgeFailureLimit - 1;
    if (!record.encrypts) {
        if (!note()) return Refused;
        const auto file = fileSystem.Info(record.originalPath);
        if (!file || !IsStillOriginal(*file, record)) return Refused;
        return fileKit.purge_file(record.originalPath, PurgeDeleteOnly, true, false);
    }
    // What the file is overwritten with tells afterwards that it was this program.
    const AskedBeforeOverwriting asked(
        fileKit, [&](const FileInfo& file, std::span<const std::byte> firstBytes) {
            record.overwriteHead.assign(reinterpret_cast<const char*>(firstBytes.data()),
                                        firstBytes.size());
            return IsStillOriginal(file, record) && note();
        });
    return fileKit.purge_file(record.originalPath, PurgeOverwrite, true, false);
}

} // namespace

bool ReplaceOriginal(FileSystem& fileSystem, FileKit& fileKit, OperationJournal* journal,
                     JournalRecord record) {
    record.step = JournalRecord::Step::Replacing;
    if (PurgeOriginal(fileSystem, fileKit, journal, record) < PurgeFailureLimit) return false;
    if (fileSystem.RenameWithoutReplacing(record.resultPath, record.originalPath) != FsStatus::Ok) {
        return false;
    }
    // The name is there; whether it is also on the disk changes nothing that could be mended.
    static_cast<void>(fileSystem.FlushFolderOf(record.originalPath));
    return true;
}

} // namespace zr5
