#pragma once

// What an interrupted operation has come to, and the words in which the user is told.

#include "operation/journal_record.h"
#include "util/user_port.h"

#include <string>

namespace zr5 {

enum class InterruptionEnd {
    Untouched,      ///< the input is as it was, and nothing else was found
    Undone,         ///< the input is as it was; the unfinished result was removed, and overwritten
                    ///< first if it could be read
    UndoneReadable, ///< the same, but what could be read was not overwritten
    Finished,       ///< the result is complete and has its name
    NotConfirmed,   ///< the same, but the disk has not confirmed the name
    Obstructed,     ///< only the replacing is left to be done, and it cannot be now
    LeftAlone,      ///< nobody can tell for certain which of the files may go, or they cannot
    OutOfReach,     ///< none of the files is to be seen, as where a disk is not connected
    OtherFolder,    ///< the folder is another one than then, by its number or its file system's
};

/// Whether the user may keep the journal for another start.
[[nodiscard]] bool MayBeKept(InterruptionEnd end);

/// Tells which file it was, what became of it, how far the operation was and how it goes on; asks
/// whether to forget it where it may be kept. `path` is the journal's.
[[nodiscard]] MessageBox BoxFor(InterruptionEnd end, const JournalRecord& record,
                                const std::string& path);

/// `refused` names journals that are not obeyed, each with the reason.
[[nodiscard]] MessageBox RefusalBox(const std::string& refused);

} // namespace zr5
