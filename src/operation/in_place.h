#pragma once

// The in-place road of one file. At every moment a complete original or a complete result is on
// the disk: the result is written beside the input, flushed and, of an encryption, read back and
// compared; only then is the input purged, and only then does the result take its name. Each step
// is noted in the journal first.

#include "operation/file_ops.h"

#include <functional>
#include <string>

namespace zr5 {

struct InPlaceHooks {
    std::function<void()> beforeVerifying; ///< the result is written; encryption only
    std::function<void()> beforePurge;     ///< the input is about to be purged
};

/// So many times the length of a file is gone through.
[[nodiscard]] unsigned InPlacePasses(Function operation);

/// The input is not touched unless the result is complete, nor if it is no longer the file that
/// was read. After success the result's path is the input's.
[[nodiscard]] FileResult ProcessInPlace(const OperationContext& operation, const std::string& path,
                                        const InPlaceHooks& hooks);

} // namespace zr5
