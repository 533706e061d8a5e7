#pragma once

// One whole run of the report screen: summary of the listing, warnings, the files, closing
// summary.

#include "operation/listing_summary.h"
#include "operation/operation_context.h"
#include "operation/report_screen.h"

#include <optional>

namespace zr5 {

/// Runs the operation to its end or to the user's stop. `randomness` is what a listing before it
/// measured, if it did.
void RunOperation(const OperationContext& operation, ReportScreen& screen,
                  const std::optional<RandomnessCounts>& randomness = std::nullopt);

/// "1,000" for 1,024,000 bytes; below that two decimals.
[[nodiscard]] std::string KilobytesText(std::uint64_t bytes);

} // namespace zr5
