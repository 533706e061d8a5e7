#include "util/durations.h"

#include <gtest/gtest.h>

namespace zr5 {
namespace {

TEST(Duration, ReadsAsAPersonWouldSayIt) {
    const struct {
        std::uint64_t seconds;
        std::string_view exact, rounded, compact, compactRounded;
    } cases[] = {{0, "0 seconds", "0 minutes", "0s", "0m"},
                 {1, "1 second", "0 minutes", "1s", "0m"},
                 {29, "29 seconds", "0 minutes", "29s", "0m"},
                 {30, "30 seconds", "1 minute", "30s", "1m"},
                 {60, "1 minute", "1 minute", "1m", "1m"},
                 {150, "2 minutes and 30 seconds", "3 minutes", "2m 30s", "3m"},
                 {3599, "59 minutes and 59 seconds", "1 hour", "59m 59s", "1h"},
                 {3601, "1 hour and 1 second", "1 hour", "1h 1s", "1h"},
                 {86399, "23 hours, 59 minutes and 59 seconds", "1 day", "23h59m 59s", "1d"},
                 {86401, "1 day and 1 second", "1 day", "1d 1s", "1d"},
                 {93784, "1 day, 2 hours, 3 minutes and 4 seconds", "1 day, 2 hours and 3 minutes",
                  "1d 2h3m 4s", "1d 2h3m"},
                 {172800, "2 days", "2 days", "2d", "2d"}};
    const auto rounding = DurationRounding::ToMinutes;
    for (const auto& c : cases) {
        EXPECT_EQ(FormatDuration(c.seconds), c.exact);
        EXPECT_EQ(FormatDuration(c.seconds, DurationForm::Long, rounding), c.rounded);
        EXPECT_EQ(FormatDuration(c.seconds, DurationForm::Compact), c.compact);
        EXPECT_EQ(FormatDuration(c.seconds, DurationForm::Compact, rounding), c.compactRounded);
    }
}

} // namespace
} // namespace zr5
