#pragma once

#include <filesystem>

namespace zr5 {

/// Draws the report screen in its main states, light and dark, into `folder`.
void DrawReportStates(const std::filesystem::path& folder);

} // namespace zr5
