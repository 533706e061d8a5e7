#pragma once

// The program's end: the questions before it, and what must not stay in memory or on the disk.

#include "app/startup.h"

#include <string>

namespace zr5 {

/// Runs the steps of quitting. False when the user wants to stay; nothing has changed then.
/// `caption` titles the question.
[[nodiscard]] bool QuitProgram(const ProgramParts& program, const std::string& nextRunSetupPath,
                               const std::string& caption);

} // namespace zr5
