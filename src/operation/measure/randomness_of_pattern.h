#pragma once

// The randomness report of several files: those of a folder that match a pattern.

#include "operation/report/report_screen.h"
#include "util/machine.h"

#include <functional>

namespace zr5 {

/// Whether the report is one of several files: in a folder, a name with "?" or "*" is a pattern.
[[nodiscard]] bool IsReportOfPattern(const OperationSetup& setup);

/// Writes the report of the files of the input folder that match its pattern on the screen, until
/// it is full or stopped. A box says so when there is none; otherwise `show` opens the screen
/// first.
void ReportRandomnessOfPattern(const OperationSetup& setup, Machine& machine, ReportScreen& screen,
                               const std::function<void()>& show);

} // namespace zr5
