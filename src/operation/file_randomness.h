#pragma once

// What a randomness report measures of one file, and the words for it.

#include "operation/operation_context.h"

#include <cstdint>
#include <string>

namespace zr5 {

inline constexpr const char* RandomnessReportTitle = "Randomness report";

struct FileRandomness {
    std::size_t index = Input; ///< Input or Output
    std::string path;
    std::uint64_t lengthBytes = 0;
    double value = 0.0;
};

/// Measures the whole file. `progress` is called at most every 50 ms and may end it through the
/// file kit.
[[nodiscard]] double MeasureWholeFile(Machine& machine, const std::string& path,
                                      ProgressFunction progress);

/// "Input file: …" or "Output file: …".
[[nodiscard]] std::string FileLine(const FileRandomness& file);
/// "Filesize = … bytes".
[[nodiscard]] std::string SizeLine(const FileRandomness& file);
/// "Randomness = …", with three decimals.
[[nodiscard]] std::string RandomnessLine(const FileRandomness& file);
/// What the value means, in plain words.
[[nodiscard]] std::string Meaning(const FileRandomness& file);
/// Why a file has no value; empty when it has one.
[[nodiscard]] std::string WhyNoValue(const FileRandomness& file);

} // namespace zr5
