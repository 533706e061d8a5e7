#pragma once

// What the program does at its start about a file that was being worked on when it was stopped.

#include "libs/filekit/file_kit.h"
#include "libs/system/file_system.h"
#include "operation/operation_journal.h"
#include "util/user_port.h"

#include <string>

namespace zr5 {

enum class InterruptionEnd {
    Untouched,  ///< the original is as it was, and nothing else was found
    Undone,     ///< the original is as it was; the unfinished result was removed
    Finished,   ///< the result is complete and has its name
    LeftAlone,  ///< nobody can tell for certain which of the files may go, or they cannot
    OutOfReach, ///< none of the files is to be seen, as where a disk is not connected
};

/// Brings about that exactly one complete file has the original's name, and removes what only the
/// interrupted run can have made and did not complete. Touches nothing that is not proved to be
/// this program's own.
[[nodiscard]] InterruptionEnd EndInterruptedFile(FileSystem& fileSystem, FileKit& fileKit,
                                                 OperationJournal& journal);

/// Does so for every journal that was left at `journalPath` and its further names by a run that
/// is over, says in one box for each which file it was and what became of it, and removes the
/// journal; the user may keep that of files out of reach for another start.
void FinishInterruptedOperations(FileSystem& fileSystem, FileKit& fileKit, UserPort& user,
                                 const std::string& journalPath);

} // namespace zr5
