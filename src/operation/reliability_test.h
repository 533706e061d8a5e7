#pragma once

// The reliability test: proves on copies that encryption followed by decryption gives every file
// back unchanged, first with the current key and then with random ones.

#include "libs/system/random.h"
#include "operation/listing_summary.h"
#include "operation/operation_context.h"
#include "operation/report_screen.h"

namespace zr5 {

/// How often the test is performed, and where its random keys come from.
struct ReliabilityRequest {
    int performances = 1;
    RandomSource& random;
};

/// Runs the test on the files of the list, which `IsReliabilityTest` (reliability_condition.h) was
/// true of, from the head of the report to its closing summary, to its end, to the first failure
/// or to the user's stop. Files, setup and key stay as they are. The copies are removed in every
/// case but one: when a comparison fails, all are kept, and the report says where. The engine holds
/// no key afterwards.
void RunReliabilityTest(const OperationContext& operation, const ReliabilityRequest& request,
                        ReportScreen& screen, const ListingSummary& listing = {});

} // namespace zr5
