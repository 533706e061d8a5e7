#pragma once

// The lines that open a report: how many files there are, and whether they look encrypted or
// compressed.

#include "libs/filekit/file_kit.h"
#include "setup/wording.h"

#include <cstdint>
#include <optional>
#include <string>

namespace zr5 {

/// How many files were measured below and above randomness value 0; exactly 0 is in neither.
struct RandomnessCounts {
    std::uint64_t below = 0;
    std::uint64_t above = 0;
    std::uint64_t measured = 0;
};

/// The randomness of a file is measured over so many bytes, and files that are shorter are not
/// measured.
inline constexpr std::uint64_t RandomnessSampleBytes = 4096;

/// Measures listed files and counts them.
class RandomnessTally {
  public:
    explicit RandomnessTally(FileKit& fileKit) : fileKit_(fileKit) {}

    void Add(const std::string& path, std::uint64_t lengthBytes) {
        if (lengthBytes < RandomnessSampleBytes) return;
        const double value = fileKit_.fr(path, RandomnessSampleBytes, {});
        if (value <= RandomnessFailureLimit) return;
        ++counts_.measured;
        if (value < 0) ++counts_.below;
        if (value > 0) ++counts_.above;
    }
    [[nodiscard]] const RandomnessCounts& Counts() const { return counts_; }

  private:
    FileKit& fileKit_;
    RandomnessCounts counts_;
};

struct ListingSummary {
    std::uint64_t files = 0;
    bool wasCutShort = false;
    std::optional<RandomnessCounts> randomness; ///< set when the listing measured it
};

/// Whole lines, each with its line end.
[[nodiscard]] std::string ListingSummaryText(Purpose purpose, const ListingSummary& listing);

} // namespace zr5
