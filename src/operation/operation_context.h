#pragma once

// What a running operation works with: what to do, which files, the machine, and the report.

#include "keys/current_key.h"
#include "operation/operation_journal.h"
#include "operation/report/report_screen.h"
#include "operation/work_list.h"
#include "setup/operation_setup.h"
#include "util/machine.h"

#include <optional>

namespace zr5 {

/// One operation; setup and key stay as they are while it runs.
struct OperationContext {
    const OperationSetup& setup;
    const CurrentKey& key;
    const WorkList& list;
    Machine& machine;
    ReportScreen& screen;
    OperationJournal& journal; ///< where results are noted; nowhere while it is closed
    /// Whether a file that is to be decrypted may turn out not to be encrypted.
    bool mayMeetPlaintext = true;
    /// The output that was there already when the user confirmed; no other one is replaced.
    std::optional<FileInfo> replaceable = std::nullopt;
    /// The folder of the input that was shown to the user; another one is left alone.
    std::optional<FileIdentity> inputFolder = std::nullopt;
    /// Whether files that look as if they were done (`LooksDone`) are left out.
    bool leavesOut = false;
};

} // namespace zr5
