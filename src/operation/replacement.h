#pragma once

// The moment at which a file is replaced: the original goes, and the result takes its name. An
// operation does this, and the next start of the program finishes it.

#include "libs/filekit/file_kit.h"
#include "operation/operation_journal.h"

namespace zr5 {

/// Purges `record.originalPath` and renames `record.resultPath`, which is complete and on the
/// disk, to it; replaces nothing that has appeared under the name meanwhile. Before the original
/// is touched, the journal (null: none) says on the disk that it is going to be, or else nothing
/// is done. True when the result has its name; false leaves it where it is.
[[nodiscard]] bool ReplaceOriginal(FileSystem& fileSystem, FileKit& fileKit,
                                   OperationJournal* journal, JournalRecord record);

} // namespace zr5
