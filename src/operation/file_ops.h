#pragma once

// One file through the cipher engine, with the files that are never encrypted in place kept out.
// `in_place.h` goes on from here where the result takes the place of the file.

#include "operation/operation_context.h"

#include <cstdint>
#include <string>

namespace zr5 {

/// The driver's own outcomes; 0 and negative ones are engine codes.
namespace outcome {
inline constexpr std::int16_t IsExecutable = 1;
inline constexpr std::int16_t IsKeyfile = 2;
inline constexpr std::int16_t IsEmpty = 3;
inline constexpr std::int16_t IsTooSmall = 4;
inline constexpr std::int16_t NoTemporaryName = 5;
inline constexpr std::int16_t NotRenamed = 6;
inline constexpr std::int16_t IsExcludedType = 7;
inline constexpr std::int16_t NotRenamedOnFloppy = 8;
} // namespace outcome

/// What became of one file.
struct FileResult {
    std::int16_t outcome = 0; ///< 0, an engine code or an outcome
    /// Where the result, or a partial plaintext, is; after a failure without either no file need
    /// be there.
    std::string resultPath;
    /// What may be left of the result of a failed operation; empty when nothing can be.
    std::string leftPath = {};
};

/// Whether a file may be worked on in place: 0, IsExecutable, IsKeyfile or IsExcludedType.
[[nodiscard]] std::int16_t CheckProtectedFile(const OperationContext& operation,
                                              const std::string& path);

/// Initialises the engine and runs it once; lets the interface react afterwards. In place,
/// protected files are refused before the engine is called. An engine code or an outcome.
[[nodiscard]] std::int16_t EncryptOrDecryptFile(const OperationContext& operation, bool inPlace,
                                                const std::string& inputPath,
                                                const std::string& outputPath);

/// The whole work on a file whose result goes to another file, noted in the journal meanwhile.
[[nodiscard]] FileResult ProcessToOther(const OperationContext& operation,
                                        const std::string& inputPath,
                                        const std::string& outputPath);

} // namespace zr5
