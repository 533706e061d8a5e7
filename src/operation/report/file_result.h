#pragma once

// What became of one file of an operation, and the words for it in the report.

#include "libs/cipher/cipher_engine.h"
#include "operation/report/run_outcome.h"

#include <cstdint>
#include <string>

namespace zr5 {

enum class Outcome {
    Done = 0,
    IsExecutable = 1,
    IsKeyfile = 2,
    IsEmpty = 3,
    IsTooSmall = 4,
    NoTemporaryName = 5,
    NotRenamed = 6, ///< the result is complete, under its temporary name
    IsExcludedType = 7,
    NotRenamedOnFloppy = 8,
    Intact,       ///< as a check has found
    LeftOut,      ///< there was nothing to be done with it
    EngineFailed, ///< `FileResult::engineResult` says why
};

/// What else there is to say of a file.
enum class Remark {
    None,
    // The result has its name:
    NotOverwritten, ///< not all of the old content was overwritten before it went
    NotFlushed,     ///< the disk has not confirmed the new name
    // The result has not, and the file that was worked on is as it was:
    NotNoted, ///< the last step could not be noted in the journal
    NotWritable,
    NotRemovable,
    HasSeveralNames,
    NoRoom,     ///< to overwrite it
    Changed,    ///< is no longer what was read
    Unreadable, ///< any more, so that the result could not be compared with it
    // The same, but the file that was worked on:
    Vanished,
    NameTaken,  ///< went, and another file has its name
    NotNamed,   ///< went
    NotRemoved, ///< was overwritten and is still there
    // There is no result:
    OutputAppeared, ///< a file that the user has not agreed to replace
    TooLarge,       ///< for one file of this disk, or by a limit of this user
};

struct FileResult {
    Outcome outcome = Outcome::Done;
    EngineResult engineResult = EngineResult::Success;
    /// Where the result, or a partial plaintext, is; after a failure without either no file need
    /// be there.
    std::string outputPath = {};
    /// What may be left of the result of a failed operation; empty when nothing can be.
    std::string leftPath = {};
    Remark remark = Remark::None;
    Damage damage = {};

    /// Done, or failed as `result` says.
    [[nodiscard]] static FileResult OfEngine(EngineResult result, std::string outputPath);
    [[nodiscard]] EntryKind Kind() const;
    /// Whether a complete result is there.
    [[nodiscard]] bool IsProcessed() const;
    /// Whether `ResultText` names `outputPath`.
    [[nodiscard]] bool NamesOutput() const;
};

/// Begins each line of the report that goes on with a file's entry.
inline constexpr const char* ContinuationIndent = "              ";

/// What the report says of a file, the remark included. `outputBytes` is the length of a result
/// that is there.
[[nodiscard]] std::string ResultText(const FileResult& result, const std::string& inputPath,
                                     Direction direction, std::uint64_t outputBytes);

} // namespace zr5
