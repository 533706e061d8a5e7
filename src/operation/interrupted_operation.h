#pragma once

// What the program does at its start about a file that was being worked on when it was stopped.

#include "operation/interruption_box.h"
#include "operation/operation_journal.h"
#include "util/machine.h"

namespace zr5 {

/// Brings about that exactly one complete file has the input's name, and removes what only the
/// interrupted run can have made and did not complete. Touches nothing that is not proved to be
/// this program's own. Work that takes longer than half a second is shown.
[[nodiscard]] InterruptionEnd EndInterruptedFile(Machine& machine, OperationJournal& journal);

/// Does so for every journal that was left in the program's own folder by a run that is over, says
/// in one box for each which file it was and what became of it, and removes the journal; the user
/// may keep that of files out of reach, in another folder or obstructed for another start, and it
/// stays when the box was not read or the disk has not confirmed the end. Journals that
/// somebody else may have written stay as they are, and one box names them and says why.
void FinishInterruptedOperations(Machine& machine);

} // namespace zr5
