#pragma once

// What is known on the disk of the one file that is being worked on, so that the next start of the
// program can finish or undo it. Only a journal that nobody but this user can have written counts.

#include "libs/system/file_system.h"
#include "operation/journal_record.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace zr5 {

/// What became of opening a journal that was left.
struct LeftJournal {
    bool isOpen = false;
    std::string whyRefused; ///< a sentence; empty where there is none, or nothing to tell of it
};

/// A file with two places that are written in turns, so that one of them is whole whenever the
/// program or the machine stops. It is locked while open, and so left alone by other runs of the
/// program, which take the next free name: "<path>", "<path>-2" to "<path>-9".
class OperationJournal {
  public:
    static constexpr int MostJournals = 9;
    /// What a record survives from when on.
    enum class Durability {
        OfProcess, ///< the end of the program, at once
        OfOrder,   ///< the end of the machine, once anything later on the same disk does
        OfDisk,    ///< the end of the machine, at once
    };

    explicit OperationJournal(FileSystem& fileSystem) : fileSystem_(fileSystem) {}
    ~OperationJournal() { Close(); }
    OperationJournal(const OperationJournal&) = delete;
    OperationJournal& operator=(const OperationJournal&) = delete;

    /// Opens a journal under the first name that no other run holds and nothing stands under but
    /// this user's journal with nothing unfinished; false when none can be made, or the next start
    /// would not obey it because the folder is not this user's alone.
    [[nodiscard]] bool OpenNew(const std::string& path);
    /// Opens the journal that lies under this very name for finishing what stands in it. Not when
    /// there is none, it cannot be read or is no such journal, or another run holds it; and not,
    /// then with the reason, when somebody else may have written it (see `WhyForeignFile`) or
    /// the record is not plausible.
    [[nodiscard]] LeftJournal OpenLeft(const std::string& path);
    [[nodiscard]] bool IsOpen() const { return file_ != nullptr; }
    /// Overwrites and removes the file, unless something stands in it that is not finished.
    void Close();
    /// Leaves what stands in it to the next start and goes on in another file, if one can be made.
    /// Nothing, for a journal that was never opened.
    void SetAside() { GoOnInAnother(); }

    /// Writes a record. False when it could not be written: then the last one still stands, and
    /// once nothing does the journal goes on in another file. Without an open file nothing is
    /// noted, and all is well unless one was lost.
    [[nodiscard]] bool Note(const JournalRecord& record,
                            Durability durability = Durability::OfProcess);
    /// What is to be noted of the operation with its next file; kept here for whoever makes the
    /// record.
    void SetTally(const FileTally& tally) { tally_ = tally; }
    [[nodiscard]] const FileTally& Tally() const { return tally_; }
    /// Notes that nothing is unfinished.
    void Forget();
    /// Whether, since this was asked last, a record could not be written or a journal to go on in
    /// not be made.
    [[nodiscard]] bool TakeFailure();
    /// Whether the operation, which began with a journal, has none to go on in: nothing may be
    /// overwritten any more.
    [[nodiscard]] bool MustStop() const { return mustStop_; }
    /// The last record that was written whole; Step::None when there is none.
    [[nodiscard]] const JournalRecord& Last() const { return last_; }

    /// Where the program keeps its journals.
    [[nodiscard]] static std::string PathIn(const std::string& ownFolder);
    /// The name of the journal with `number`, from 1.
    [[nodiscard]] static std::string Name(const std::string& path, int number);

  private:
    /// What stands in the open file.
    enum class Content {
        Record,     ///< one is whole, and in `last_`
        Nothing,    ///< it was just made, or was being made
        Unreadable, ///< or no journal of this kind
    };
    [[nodiscard]] Content Read();
    [[nodiscard]] std::string WhyRefused() const;
    void GoOnInAnother();
    void Erase();
    [[nodiscard]] bool Write(const JournalRecord& record, Durability durability);
    [[nodiscard]] bool WriteEmptyPlaces();

    FileSystem& fileSystem_;
    std::string basePath_; ///< as it was given to OpenNew
    std::string path_;
    std::unique_ptr<OpenFile> file_;
    JournalRecord last_;
    FileTally tally_;
    std::uint64_t sequence_ = 0;
    bool isSpoilt_ = false;  ///< the open file could not be written
    bool hasFailed_ = false; ///< and it was not told yet
    bool mustStop_ = false;
};

} // namespace zr5
