#pragma once

// What may be typed into the two text boxes of the main window.

#include "setup/operation_setup.h"
#include "util/user_port.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zr5 {

/// Limits of a typed maximum number of files. A setup file may go down to MaxNumFilesLower.
inline constexpr std::int64_t TypedMaxNumFilesLower = 10;
inline constexpr std::int64_t TypedMaxNumFilesUpper = 10000;

/// The number at the start of `text` ("25 files" is 25); 0 when there is none. Values too large
/// to count files come back as a large number.
[[nodiscard]] std::int64_t LeadingNumber(std::string_view text);

/// The value of a typed maximum number of files; empty when it is not within the limits.
[[nodiscard]] std::optional<std::int16_t> TypedMaxNumFiles(std::string_view text);

/// The value of a maximum number of files in a setup file; 100 when it is not within the limits
/// of setup files.
[[nodiscard]] std::int16_t StoredMaxNumFiles(std::string_view text);

/// What the user reads when a typed maximum is refused.
[[nodiscard]] MessageBox RefusedMaxNumFilesBox();
/// What the user reads when a typed pattern is refused.
[[nodiscard]] MessageBox RefusedPatternBox(std::string_view pattern);

} // namespace zr5
