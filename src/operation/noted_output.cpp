#include "operation/noted_output.h"

#include "util/paths.h"

namespace zr5 {
namespace {

/// The result, or what could be recovered of it.
bool ReportNamesResult(std::int16_t outcome) {
    return outcome == 0 || outcome == outcome::NotRenamed ||
           outcome == outcome::NotRenamedOnFloppy || outcome <= engine_code::ReadErrorPartial;
}

} // namespace

NotedOutput::NotedOutput(const OperationContext& operation, JournalRecord record)
    : fileSystem_(operation.machine.fileSystem),
      engine_(operation.machine.engine),
      journal_(operation.journal),
      record_(std::move(record)),
      folder_(ResultFolder()) {
    if (folder_) record_.resultFolder = folder_->inode;
    engine_.SetOutputObserver(this);
}

NotedOutput::~NotedOutput() {
    engine_.SetOutputObserver(nullptr);
}

std::optional<FileIdentity> NotedOutput::ResultFolder() const {
    return fileSystem_.IdentityOf(SplitPath(record_.resultPath).folder);
}

bool NotedOutput::Note() {
    return journal_ == nullptr || journal_->Note(record_, OperationJournal::Durability::OfOrder);
}

bool NotedOutput::IsResult(const FileInfo& file) const {
    return MarkOf(file).IsSameFileAs(record_.result);
}

bool NotedOutput::MayReplace() const {
    return record_.step == JournalRecord::Step::WritingElsewhere;
}

bool NotedOutput::WillMake(const std::string& path) {
    record_.partPath = path;
    return Note();
}

bool NotedOutput::WillName(const FileInfo& info, Extent extent) {
    record_.result = MarkOf(info);
    if (extent == Extent::Part) record_.step = JournalRecord::Step::WritingElsewhere;
    return Note();
}

FileResult NotedOutput::Ended(FileResult result) {
    if (!ReportNamesResult(result.outcome)) result.leftPath = LeftPath();
    if (journal_ == nullptr) return result;
    const bool isOutOfReach = result.outcome != 0 && isMade_ && ResultFolder() != folder_;
    if (!result.leftPath.empty() || isOutOfReach) {
        journal_->SetAside();
    } else if (journal_->Last().step != JournalRecord::Step::None) {
        static_cast<void>(journal_->Note({}));
    }
    return result;
}

/// Where nothing can be seen, as on a disk that was taken away, something may be.
std::string NotedOutput::LeftPath() const {
    if (!isMade_) return {};
    if (ResultFolder() != folder_ || fileSystem_.Info(record_.partPath)) return record_.partPath;
    const auto result = fileSystem_.Info(record_.resultPath);
    return result && IsResult(*result) ? record_.resultPath : std::string{};
}

} // namespace zr5
