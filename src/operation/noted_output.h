#pragma once

// What an operation knows of the one result that it is making, so that whatever may be left of it
// is named: by the report, or after a crash by the next start.

#include "operation/file_ops.h"

#include <optional>
#include <string>

namespace zr5 {

/// Follows the engine from the making of a result on, as long as it lives, and notes each step in
/// the journal if there is one.
class NotedOutput final : public OutputObserver {
  public:
    /// `record` says which file goes into which, and how.
    NotedOutput(const OperationContext& operation, JournalRecord record);
    ~NotedOutput() override;
    NotedOutput(const NotedOutput&) = delete;
    NotedOutput& operator=(const NotedOutput&) = delete;

    /// In place the result has a name that was free; whatever has taken it since stays.
    [[nodiscard]] bool MayReplace() const override;
    [[nodiscard]] bool WillMake(const std::string& path) override;
    void HasMade() override { isMade_ = true; }
    /// A part is named by the report, and the original stays: so it is noted as a result
    /// elsewhere, that the next start must not remove.
    [[nodiscard]] bool WillName(const FileInfo& info, Extent extent) override;

    [[nodiscard]] const JournalRecord& record() const { return record_; }
    /// Whether `file` is what the engine has made.
    [[nodiscard]] bool IsResult(const FileInfo& file) const;

    /// The work on the file has ended with `result`, whose `leftPath` is filled in here. The
    /// journal forgets the file unless something may be left that should not be: this it keeps
    /// for the next start.
    [[nodiscard]] FileResult Ended(FileResult result);

  private:
    [[nodiscard]] bool Note();
    [[nodiscard]] std::optional<FileIdentity> ResultFolder() const;
    [[nodiscard]] std::string LeftPath() const;

    FileSystem& fileSystem_;
    CipherEngine& engine_;
    OperationJournal* journal_;
    JournalRecord record_;
    std::optional<FileIdentity> folder_; ///< in which the result is made
    bool isMade_ = false;
};

} // namespace zr5
