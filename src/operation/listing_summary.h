#pragma once

// The lines that open a report: how many files there are, and whether they look encrypted.

#include "setup/operation_setup.h"

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

struct ListingSummary {
    std::uint64_t files = 0;
    bool wasCutShort = false;
    std::optional<RandomnessCounts> randomness; ///< set when the listing measured it
};

/// Whole lines, each with its line end.
[[nodiscard]] std::string ListingSummaryText(Function operation, const ListingSummary& listing);

} // namespace zr5
