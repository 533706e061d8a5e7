#pragma once

// The randomness report of several files: those that were listed.

#include "operation/report/report_screen.h"
#include "util/machine.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zr5 {

struct ListedFile {
    std::string path;
    std::uint64_t lengthBytes = 0; ///< when it was listed
};

/// Writes the report of `files` below what stands on the screen, until it is full or stopped. What
/// cannot be measured has an entry that says why.
void ReportRandomnessOfFiles(const std::vector<ListedFile>& files, Machine& machine,
                             ReportScreen& screen);

} // namespace zr5
