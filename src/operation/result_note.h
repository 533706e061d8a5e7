#pragma once

// The note in the journal about the one result that is being made, so that whatever may be left of
// it is named: by the report, or after a crash by the next start.

#include "operation/operation_journal.h"
#include "operation/report/file_result.h"

#include <optional>
#include <span>
#include <string>

namespace zr5 {

/// Owns the record of one result and writes it into the journal at each step: the engine, which it
/// observes, is about to make the part; the result is whole and gets its name; the input is going
/// to be replaced; the work has ended.
class ResultNote final : public OutputObserver {
  public:
    /// `record` says which file goes into which, and how; one that was read from the journal is
    /// gone on with. `replaceable` is the one output that may be replaced.
    ResultNote(FileSystem& fileSystem, OperationJournal& journal, JournalRecord record,
               const std::optional<FileInfo>& replaceable = std::nullopt);

    [[nodiscard]] const JournalRecord& Record() const { return record_; }

    /// In place the result has a name that was free; whatever has taken it since stays, and so
    /// does an output that the user has not agreed to replace.
    [[nodiscard]] bool MayReplace(const FileInfo& existing) override;
    [[nodiscard]] bool StandsForSource() const override { return isInPlace_; }
    [[nodiscard]] bool WillMake(const std::string& partPath) override;
    void HasMade() override { isMade_ = true; }
    /// A salvage is named by the report, and the input stays: so it is noted as a result
    /// elsewhere, that the next start must not remove.
    [[nodiscard]] bool WillName(const FileInfo& info, const std::string& path) override;
    void IsTooLarge() override { remark_ = Remark::TooLarge; }

    /// Whether `file` is what the engine has made.
    [[nodiscard]] bool IsResult(const FileInfo& file) const;
    /// Whether nothing at all has happened to the input, which is `file`, since it was read; for
    /// a run that was interrupted nobody can tell, and IsInput has to do.
    [[nodiscard]] bool IsUntouched(const FileInfo& file) const;
    /// The input is `file` when its reading begins.
    void ReadsInput(const FileInfo& file) { read_ = file; }
    /// Whether `file` is the input, as it was read or as an interrupted run has overwritten it.
    [[nodiscard]] bool IsInput(const FileInfo& file) const;

    /// The result was looked at again, and is `mark` now.
    void ResultIs(const FileMark& mark) { record_.output = mark; }
    /// The input is going to be replaced, its content to begin with `head`. Returns when the disk
    /// knows it; false when it cannot, and then the input must stay.
    [[nodiscard]] bool Replacing(std::span<const std::byte> head);

    /// The work on the file has ended with `result`, whose `leftPath` is filled in here. The
    /// journal forgets the file unless something may be left that should not be: this it keeps
    /// for the next start.
    [[nodiscard]] FileResult Ended(FileResult result);

  private:
    [[nodiscard]] bool Write();
    [[nodiscard]] std::optional<FileIdentity> OutputFolder() const;
    [[nodiscard]] std::string LeftPath() const;

    FileSystem& fileSystem_;
    OperationJournal& journal_;
    JournalRecord record_;
    std::optional<FileIdentity> folder_; ///< in which the result is made
    std::optional<FileInfo> replaceable_;
    std::optional<FileInfo> read_;
    bool isInPlace_;
    bool isMade_ = false;
    Remark remark_ = Remark::None; ///< what there is to say of a failure
};

} // namespace zr5
