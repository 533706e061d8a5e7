#pragma once

// How far an operation has come, in the file that is worked on and as a whole, and how long it has
// taken.

#include "libs/system/clock.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace zr5 {

/// The file that is worked on. It is gone through in one or more passes over its length.
struct FileProgress {
    std::string name; ///< for display; empty when there was none yet
    std::uint64_t lengthBytes = 0;
    unsigned passes = 1;
    unsigned passesDone = 0;
    double ofPass = 0.0; ///< from 0 to 1
    bool isDone = true;

    /// From 0 to 1.
    [[nodiscard]] double Fraction() const;
};

struct OperationProgress {
    std::uint64_t files = 0;
    std::uint64_t filesDone = 0;
    std::uint64_t totalBytes = 0;
    std::uint64_t filesDoneBytes = 0;
    FileProgress file;

    /// Of the files done, and of the current one as far as it is done.
    [[nodiscard]] std::uint64_t BytesDone() const;
    /// From 0 to 1. A file costs time of its own besides its bytes.
    [[nodiscard]] double Fraction() const;
    /// "12 of 340 files, 5.20 of 80.00 MB, 2 minutes left"; `worked` is the time that it took so
    /// far, pauses left out. What is left is said once there is enough to judge by.
    [[nodiscard]] std::string Text(std::chrono::milliseconds worked) const;
};

/// When a run began and how long it has taken.
class RunClock {
  public:
    explicit RunClock(const Clock& clock) : clock_(clock) {}
    void Start();
    void Stop();
    /// Runs `wait`, in which the run is not at work.
    void Pause(const std::function<void()>& wait);

    /// Since the start, or until the stop, to the nearest second.
    [[nodiscard]] std::int64_t ElapsedSeconds() const;
    /// The same without pauses.
    [[nodiscard]] std::chrono::milliseconds Worked() const { return Elapsed() - pausedFor_; }
    /// "Started 14:03, elapsed 2 minutes"; empty before the first start.
    [[nodiscard]] std::string Text() const;

  private:
    enum class State { NotStarted, Running, Stopped };

    [[nodiscard]] std::chrono::milliseconds Elapsed() const;

    const Clock& clock_;
    State state_ = State::NotStarted;
    std::chrono::milliseconds startedAt_{0};
    std::chrono::milliseconds startTimeOfDay_{0};
    std::chrono::milliseconds ranFor_{0};
    std::chrono::milliseconds pausedFor_{0};
};

} // namespace zr5
