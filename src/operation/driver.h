#pragma once

// The heart of an operation: every file of the work list, one after the other, each with its
// entry in the report.

#include "operation/operation_context.h"

#include <cstdint>

namespace zr5 {

/// The report's line where a folder was exchanged for another one since it was shown or listed.
inline constexpr const char* FolderIsAnother =
    "***  Folder is no longer the one that was listed: its files are left alone  ***\r\n";

/// Below this value a file does not look encrypted.
inline constexpr double RandomnessThreshold = 0.0;

struct OperationTotals {
    std::uint64_t filesProcessed = 0; ///< files with a complete result; in a check, that were read
    std::uint64_t totalBytes = 0;     ///< of their inputs
    std::uint64_t filesLeftOut = 0;   ///< as the user wished
    std::uint64_t filesIntact = 0;    ///< in a check
    std::uint64_t filesEmpty = 0;     ///< in a check
    std::uint64_t filesNotOpened = 0; ///< in a check: damaged altogether, or not of this key
};

/// Writes the heading and works through the list. Returns when the list is done or the user has
/// stopped it; nothing that happens to one file ends the operation.
OperationTotals ProcessFiles(const OperationContext& operation);

} // namespace zr5
