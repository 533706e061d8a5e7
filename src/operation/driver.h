#pragma once

// The heart of an operation: every file of the work list, one after the other, each with its
// entry in the report.

#include "operation/operation_context.h"
#include "operation/randomness_tally.h"
#include "operation/report_screen.h"

#include <string>

namespace zr5 {

/// Below this value a file does not look encrypted.
inline constexpr double RandomnessThreshold = 0.0;

/// What is processed, in words: the file's path, "all files in the folder ..." or the pattern
/// and the folder.
[[nodiscard]] std::string InputDescription(const OperationSetup& setup);

/// Writes the heading and works through the list. Returns when the list is done or the user has
/// stopped it; nothing that happens to one file ends the operation.
void ProcessFiles(const OperationContext& operation, ReportScreen& screen);

} // namespace zr5
