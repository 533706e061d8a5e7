#pragma once

// "List files": shows on the report screen what an operation would be about, and touches nothing.

#include "operation/measure/randomness_of_files.h"
#include "operation/report/report_screen.h"
#include "operation/work_list.h"

#include <functional>
#include <string>
#include <vector>

namespace zr5 {

/// Lists the files of a folder operation until the maximum, or until the user stops it. When
/// there is none, or the user stops the search for a first one, a box with the title
/// `buttonCaption` says so and nothing is listed; otherwise `show` opens the report screen first.
/// Where `stopped` ends that search, nothing is said. Returns what was listed.
[[nodiscard]] std::vector<ListedFile> ListFiles(const OperationSetup& setup, Machine& machine,
                                                ReportScreen& screen,
                                                const std::string& buttonCaption,
                                                const StopAsked& stopped,
                                                const std::function<void()>& show);

/// "<folder> has 2 matching files and 1 subfolder." and a line end.
[[nodiscard]] std::string FolderSummaryLine(const std::string& folder, std::uint64_t matchingFiles,
                                            std::uint64_t subfolders);

} // namespace zr5
