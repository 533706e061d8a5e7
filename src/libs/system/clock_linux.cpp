#include "libs/system/clock.h"

#include <ctime>

namespace zr5 {

std::chrono::milliseconds SystemClock::Now() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

std::chrono::milliseconds SystemClock::TimeOfDay() const {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    std::tm local{};
    localtime_r(&now.tv_sec, &local);
    return std::chrono::hours(local.tm_hour) + std::chrono::minutes(local.tm_min) +
           std::chrono::seconds(local.tm_sec) + std::chrono::milliseconds(now.tv_nsec / 1'000'000);
}

std::chrono::nanoseconds SystemClock::SinceEpoch() const {
    return std::chrono::system_clock::now().time_since_epoch();
}

} // namespace zr5
