#pragma once

// The reliability test: proves on copies that encryption followed by decryption gives every file
// back unchanged, first with the current key and then with random ones.

#include "operation/listing_summary.h"
#include "operation/operation_context.h"

namespace zr5 {

/// Performs the test so often on the files of the list, which `IsReliabilityTest`
/// (reliability_condition.h) was true of, from the head of the report to its closing summary, to
/// its end, to the first failure or to the user's stop. Files, setup and key stay as they are. The
/// copies are removed in every case but one: when a comparison fails, all are kept, and the report
/// says where. The engine holds no key afterwards.
void RunReliabilityTest(const OperationContext& operation, int performances,
                        const ListingSummary& listing = {});

} // namespace zr5
