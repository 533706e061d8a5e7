#pragma once

// Spans of time in words, as the report gives them.

#include <cstdint>
#include <string>

namespace zr5 {

enum class DurationForm {
    Long,    ///< "1 day, 2 hours and 3 minutes"
    Compact, ///< "1d 2h3m 4s"
};
enum class DurationRounding {
    Exact,
    /// To whole minutes: a seconds part below 30 is dropped, one of 30 or more is a minute.
    ToMinutes,
};

/// Days, hours, minutes and seconds, each left out when it is 0.
/// Long: " and " before the last, ", " before the others between, one of a unit in the singular.
/// No time at all is "0 minutes" when rounded, else "0 seconds".
/// Compact: a blank after the days and before the seconds, none between hours and minutes;
/// hours without minutes before seconds are "2h 4s". No time at all is "0m" or "0s".
[[nodiscard]] std::string FormatDuration(std::uint64_t seconds,
                                         DurationForm form = DurationForm::Long,
                                         DurationRounding rounding = DurationRounding::Exact);

} // namespace zr5
