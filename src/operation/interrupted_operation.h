#pragma once

// What the program does at its start about a file that was being replaced when it was stopped.

#include "libs/file_kit.h"
#include "libs/file_system.h"
#include "operation/operation_journal.h"
#include "util/user_port.h"

#include <string>

namespace zr5 {

enum class InterruptionEnd {
    Untouched, ///< the original is as it was, and nothing lies beside it
    Undone,    ///< the original is as it was; the result that lay beside it was removed
    Finished,  ///< the result has the original's name
    LeftAlone, ///< nobody can tell for certain which of the files may go, so none went
};

/// Brings about that exactly one complete file has the name, and removes what only the
/// interrupted run can have made. Touches nothing that is not proved to be this program's own.
[[nodiscard]] InterruptionEnd EndInterruptedFile(FileSystem& fileSystem, FileKit& fileKit,
                                                 OperationJournal& journal);

/// Does so for every journal that was left at `journalPath` and its further names by a run that
/// is over, says in one box for each which file it was and what became of it, and removes the
/// journal.
void FinishInterruptedOperations(FileSystem& fileSystem, FileKit& fileKit, UserPort& user,
                                 const std::string& journalPath);

} // namespace zr5
