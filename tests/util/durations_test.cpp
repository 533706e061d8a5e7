#include "util/durations.h"

#include <gtest/gtest.h>

namespace zr5 {
namespace {

struct DurationCase {
    std::uint64_t seconds;
    std::string_view exact, rounded, compact, compactRounded;
};
class Duration : public testing::TestWithParam<DurationCase> {};

TEST_P(Duration, ReadsAsAPersonWouldSayIt) {
    const auto& c = GetParam();
    const auto rounding = DurationRounding::ToMinutes;
    EXPECT_EQ(FormatDuration(c.seconds), c.exact);
    EXPECT_EQ(FormatDuration(c.seconds, DurationForm::Long, rounding), c.rounded);
    EXPECT_EQ(FormatDuration(c.seconds, DurationForm::Compact), c.compact);
    EXPECT_EQ(FormatDuration(c.seconds, DurationForm::Compact, rounding), c.compactRounded);
}

INSTANTIATE_TEST_SUITE_P(
    Edges, Duration,
    testing::Values(DurationCase{0, "0 seconds", "0 minutes", "0s", "0m"},
                    DurationCase{1, "1 second", "0 minutes", "1s", "0m"},
                    DurationCase{29, "29 seconds", "0 minutes", "29s", "0m"},
                    DurationCase{30, "30 seconds", "1 minute", "30s", "1m"},
                    DurationCase{60, "1 minute", "1 minute", "1m", "1m"},
                    DurationCase{150, "2 minutes and 30 seconds", "3 minutes", "2m 30s", "3m"},
                    DurationCase{3599, "59 minutes and 59 seconds", "1 hour", "59m 59s", "1h"},
                    DurationCase{3601, "1 hour and 1 second", "1 hour", "1h 1s", "1h"},
                    DurationCase{86399, "23 hours, 59 minutes and 59 seconds", "1 day",
                                 "23h59m 59s", "1d"},
                    DurationCase{86401, "1 day and 1 second", "1 day", "1d 1s", "1d"},
                    DurationCase{93784, "1 day, 2 hours, 3 minutes and 4 seconds",
                                 "1 day, 2 hours and 3 minutes", "1d 2h3m 4s", "1d 2h3m"},
                    DurationCase{172800, "2 days", "2 days", "2d", "2d"}));

} // namespace
} // namespace zr5
