#pragma once

// Measures listed files and counts how many look encrypted or compressed and how many do not.

#include "libs/filekit/file_kit.h"
#include "operation/listing_summary.h"

#include <cstdint>
#include <string>

namespace zr5 {

/// The randomness of a file is measured over so many bytes, and files that are shorter are not
/// measured.
inline constexpr std::int32_t RandomnessSampleBytes = 4096;

class RandomnessTally {
  public:
    explicit RandomnessTally(FileKit& fileKit) : fileKit_(fileKit) {}

    void Add(const std::string& path, std::uint64_t lengthBytes) {
        if (lengthBytes < std::uint64_t{RandomnessSampleBytes}) return;
        const double value = fileKit_.fr(path, RandomnessSampleBytes);
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

} // namespace zr5
