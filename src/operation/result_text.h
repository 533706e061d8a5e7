#pragma once

// The words of the report for every result code of the cipher engine.

#include <cstdint>
#include <string>

namespace zr5 {

/// Begins each line of the report that goes on with a file's entry.
inline constexpr const char* ContinuationIndent = "              ";

/// The report's text for a negative engine code. `outputName` is the file in which a partial
/// plaintext may be (codes -99 to -16 say so).
[[nodiscard]] std::string EngineResultText(std::int16_t code, const std::string& outputName);

} // namespace zr5
