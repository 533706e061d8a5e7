#pragma once

// Time is handed in, so that tests decide what the clock says.

#include <chrono>

namespace zr5 {

class Clock {
  public:
    virtual ~Clock() = default;
    /// Time since some fixed moment; never goes back.
    [[nodiscard]] virtual std::chrono::milliseconds Now() const = 0;
    /// Local time of day since midnight.
    [[nodiscard]] virtual std::chrono::milliseconds TimeOfDay() const = 0;
};

/// The clock of the machine.
class SystemClock final : public Clock {
  public:
    [[nodiscard]] std::chrono::milliseconds Now() const override;
    [[nodiscard]] std::chrono::milliseconds TimeOfDay() const override;
};

} // namespace zr5
