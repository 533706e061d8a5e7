#pragma once

// The in-place road of one file. At every moment a complete original or a complete result is on
// the disk: the result is written beside the input and flushed, only then is the input purged,
// and only then does the result take its name.

#include "operation/operation_context.h"

#include <cstdint>
#include <functional>
#include <string>

namespace zr5 {

struct InPlaceResult {
    std::int16_t outcome = 0;
    /// Where the result, or a partial plaintext, is: the input's path after success, else the
    /// temporary file's if one is left.
    std::string resultPath;
};

/// `beforePurge` is called when the result is on the disk and the input is about to be purged.
/// The input is not touched unless the result is complete, nor if it is no longer the file that
/// was read.
[[nodiscard]] InPlaceResult ProcessInPlace(const OperationContext& operation,
                                           const std::string& path,
                                           const std::function<void()>& beforePurge);

} // namespace zr5
