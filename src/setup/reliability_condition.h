#pragma once

// When an encryption is the reliability test.

#include "setup/operation_setup.h"

namespace zr5 {

/// Encrypting the files "*.tst" of a folder, without its subfolders, whose own name is "zr5test".
/// Capitals count in the pattern; in the name of the folder only where they do for the system.
[[nodiscard]] bool IsReliabilityTest(const OperationSetup& setup);

} // namespace zr5
