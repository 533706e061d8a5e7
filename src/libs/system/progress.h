#pragma once

// How work that takes long tells how far it is.

#include "libs/system/clock.h"

#include <cstdint>
#include <functional>
#include <utility>

namespace zr5 {

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
