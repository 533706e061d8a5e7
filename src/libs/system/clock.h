#pragma once

// Time is handed in, so that tests decide what the clock says; and with it how work that takes
// long tells how far it is.

#include <chrono>
#include <cstdint>
#include <functional>
#include <utility>

namespace zr5 {

class Clock {
  public:
    virtual ~Clock() = default;
    /// Time since some fixed moment; never goes back.
    [[nodiscard]] virtual std::chrono::milliseconds Now() const = 0;
    /// Local time of day since midnight.
    [[nodiscard]] virtual std::chrono::milliseconds TimeOfDay() const = 0;
    /// Since 1970 by the machine's calendar, which can be set back.
    [[nodiscard]] virtual std::chrono::nanoseconds SinceEpoch() const = 0;
};

/// The clock of the machine.
class SystemClock final : public Clock {
  public:
    [[nodiscard]] std::chrono::milliseconds Now() const override;
    [[nodiscard]] std::chrono::milliseconds TimeOfDay() const override;
    [[nodiscard]] std::chrono::nanoseconds SinceEpoch() const override;
};

/// Called while a file is worked on, at most every 50 ms: bytes done and in all.
using ProgressFunction = std::function<void(std::uint64_t doneBytes, std::uint64_t totalBytes)>;

inline constexpr std::chrono::milliseconds ProgressInterval{50};

/// `progress`, called through at most every 50 ms from now on; empty when it is. The clock must
/// outlive the function.
[[nodiscard]] inline ProgressFunction Throttled(const Clock& clock, ProgressFunction progress) {
    if (!progress) return {};
    return [&clock, progress = std::move(progress),
            last = clock.Now()](std::uint64_t done, std::uint64_t total) mutable {
        if (clock.Now() - last < ProgressInterval) return;
        progress(done, total);
        last = clock.Now();
    };
}

} // namespace zr5
