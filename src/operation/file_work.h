#pragma once

// The work on one file: through the cipher engine into another file, in place, or nowhere.
//
// In place a complete input or a complete result is on the disk at every moment: the result is
// made beside the input, flushed and, of an encryption, read back and compared; only then is the
// input purged, and only then does the result take its name. Each step is noted in the journal
// first.

#include "operation/operation_context.h"
#include "operation/report/file_result.h"
#include "operation/result_note.h"

#include <functional>
#include <string>

namespace zr5 {

/// So many times the length of a file is gone through in place.
[[nodiscard]] unsigned InPlacePasses(Direction direction);

/// The result goes to `outputPath`.
[[nodiscard]] FileResult ProcessToOther(const OperationContext& operation,
                                        const std::string& inputPath,
                                        const std::string& outputPath);

/// Reads the file with the key and makes nothing.
[[nodiscard]] FileResult CheckOne(const OperationContext& operation, const std::string& inputPath);

/// The result takes the place of the input. Refuses the program itself, the keyfile in use and
/// the extensions that are never worked on in place. The input is not touched unless the result is
/// complete, nor if it is no longer the file that was read. `beforePurge` is called when only the
/// replacing is left to be done. After success the result's path is the input's.
[[nodiscard]] FileResult ProcessInPlace(const OperationContext& operation,
                                        const std::string& inputPath,
                                        const std::function<void()>& beforePurge);

/// The last step, which the next start of the program also takes: purges the input and gives its
/// name to the result, which is complete and on the disk; replaces nothing that has appeared under
/// the name meanwhile. `HasName` of what it answers says whether the result has its name; else it
/// stays where it is.
[[nodiscard]] Remark ReplaceInput(FileSystem& fileSystem, FileKit& fileKit, ResultNote& note,
                                  const ProgressFunction& progress = {});

/// Of a result in place, for the remark with which ReplaceInput ended.
[[nodiscard]] constexpr bool HasName(Remark remark) noexcept {
    return remark == Remark::None || remark == Remark::NotOverwritten ||
           remark == Remark::NotFlushed;
}

} // namespace zr5
