#pragma once

// A clock that says what the test sets, or moves on by a step whenever it is read.

#include "libs/system/clock.h"

namespace zr5::test {

class StoppedClock : public Clock {
  public:
    mutable std::chrono::milliseconds now{0};
    std::chrono::milliseconds step{0};
    std::chrono::milliseconds timeOfDay{std::chrono::hours(14) + std::chrono::minutes(3)};
    [[nodiscard]] std::chrono::milliseconds Now() const override { return now += step; }
    [[nodiscard]] std::chrono::milliseconds TimeOfDay() const override { return timeOfDay; }
};

} // namespace zr5::test
