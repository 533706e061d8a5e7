#include "operation/result_note.h"

#include "libs/system/paths.h"

namespace zr5 {

namespace {

bool IsAsItWas(const FileInfo& now, const FileInfo& then) {
    return now.identity == then.identity && now.changedNs == then.changedNs &&
           now.lengthBytes == then.lengthBytes;
}

} // namespace

ResultNote::ResultNote(FileSystem& fileSystem, OperationJournal& journal, JournalRecord record,
                       const std::optional<FileInfo>& replaceable)
    : fileSystem_(fileSystem),
      journal_(journal),
      record_(std::move(record)),
      folder_(OutputFolder()),
      replaceable_(replaceable),
      isInPlace_(record_.step != JournalRecord::Step::WritingElsewhere) {
    if (!folder_) return;
    record_.outputFolder = folder_->inode;
    record_.outputVolume = fileSystem.VolumeOf(SplitPath(record_.outputPath).folder);
}

std::optional<FileIdentity> ResultNote::OutputFolder() const {
    return fileSystem_.IdentityOf(SplitPath(record_.outputPath).folder);
}

bool ResultNote::Write() {
    return journal_.Note(record_, OperationJournal::Durability::OfOrder);
}

bool ResultNote::MayReplace(const FileInfo& existing) {
    // A new file may get the number of one that has just gone, but not its times.
    const bool agreed = !isInPlace_ && replaceable_ && IsAsItWas(existing, *replaceable_);
    if (!agreed) remark_ = Remark::OutputAppeared;
    return agreed;
}

bool ResultNote::WillMake(const std::string& partPath) {
    record_.partPath = partPath;
    return Write();
}

bool ResultNote::WillName(const FileInfo& info, const std::string& path) {
    record_.output = MarkOf(info);
    if (path != record_.outputPath) {
        record_.step = JournalRecord::Step::WritingElsewhere;
        record_.outputPath = path;
    }
    return Write();
}

bool ResultNote::IsResult(const FileInfo& file) const {
    return MarkOf(file).IsSameFileAs(record_.output);
}

bool ResultNote::IsUntouched(const FileInfo& file) const {
    return IsInput(file) && (!read_ || IsAsItWas(file, *read_));
}

bool ResultNote::IsInput(const FileInfo& file) const {
    const FileMark mark = MarkOf(file);
    return record_.earlierHead.empty() ? mark == record_.input : mark.IsSameFileAs(record_.input);
}

bool ResultNote::Replacing(std::span<const std::byte> head) {
    record_.step = JournalRecord::Step::Replacing;
    record_.overwriteHead.assign(reinterpret_cast<const char*>(head.data()), head.size());
    return journal_.Note(record_, OperationJournal::Durability::OfDisk);
}

FileResult ResultNote::Ended(FileResult result) {
    if (!result.NamesOutput()) result.leftPath = LeftPath();
    if (result.outcome == Outcome::EngineFailed) result.remark = remark_;
    const bool isOutOfReach =
        result.outcome != Outcome::Done && isMade_ && OutputFolder() != folder_;
    if (!result.leftPath.empty() || isOutOfReach || result.remark == Remark::NotFlushed) {
        journal_.SetAside();
    } else if (journal_.Last().step != JournalRecord::Step::None) {
        journal_.Forget();
    }
    return result;
}

/// Where nothing can be seen, as on a disk that was taken away, something may be.
std::string ResultNote::LeftPath() const {
    if (!isMade_) return {};
    if (OutputFolder() != folder_ || fileSystem_.Info(record_.partPath)) return record_.partPath;
    const auto result = fileSystem_.Info(record_.outputPath);
    return result && IsResult(*result) ? record_.outputPath : std::string{};
}

} // namespace zr5
