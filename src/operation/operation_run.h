#pragma once

// One whole run of the report screen: summary of the listing, warnings, the files, closing
// summary.

#include "operation/driver.h"
#include "operation/listing_summary.h"
#include "operation/operation_context.h"

#include <cstdint>
#include <functional>
#include <string>

namespace zr5 {

/// What is done with the files between the head of the report and its closing summary.
using FileWork = std::function<OperationTotals(const OperationContext&)>;

/// Runs the operation to its end or to the user's stop; its journal is opened for it, unless it is
/// a check. The run
/// begins here, unless it began with the making of the list. `listing` tells what was measured
/// then, and whether it is complete.
void RunOperation(const OperationContext& operation, const ListingSummary& listing = {},
                  const FileWork& work = ProcessFiles);

/// "1,000" for 1,024,000 bytes; below that two decimals.
[[nodiscard]] std::string KilobytesText(std::uint64_t bytes);

} // namespace zr5
