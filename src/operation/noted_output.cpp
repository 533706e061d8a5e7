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
      record_(std::move(record)) {
    engine_.SetOutputObserver(this);
}

NotedOutput::~NotedOutput() {
    engine_.SetOutputObserver(nullptr);
}

bool NotedOutput::Note() {
    return journal_ == nullptr || journal_->Note(record_);
}

bool NotedOutput::WillMake(const std::string& path) {
    record_.partPath = path;
    return Note();
}

bool NotedOutput::WillName(const FileInfo& info) {
    record_.result = MarkOf(info);
    return Note();
}

FileResult NotedOutput::Ended(FileResult result) {
    if (!ReportNamesResult(result.outcome)) result.leftPath = LeftPath();
    if (journal_ == nullptr) return result;
    if (!result.leftPath.empty()) {
        journal_->SetAside();
    } else if (journal_->Last().step != JournalRecord::Step::None) {
        static_cast<void>(journal_->Note({}));
    }
    return result;
}

/// Where nothing can be seen, as on a disk that was taken away, something may be.
std::string NotedOutput::LeftPath() const {
    if (record_.partPath.empty()) return {};
    const bool folderIsThere = fileSystem_.Info(SplitPath(record_.partPath).folder).has_value();
    if (!folderIsThere || fileSystem_.Info(record_.partPath)) return record_.partPath;
    const auto result = fileSystem_.Info(record_.resultPath);
    return result && MarkOf(*result) == record_.result ? record_.resultPath : std::string{};
}

} // namespace zr5
