#pragma once

// What the process as a whole asks of the operating system, and is asked from outside.

#include <cstdint>

namespace zr5 {

/// Switches core dumps of this process off and keeps other processes of the user from reading
/// its memory. Called once, first thing in the program.
void ForbidCoreDumps() noexcept;

/// Makes a file that grows past the limit of the process a write error, in place of its end.
void SurviveFileSizeLimit() noexcept;

/// By which the system tells this process from the others that run.
[[nodiscard]] std::uint64_t ProcessNumber() noexcept;

/// While it lives, requests from outside to end the program (SIGTERM, SIGHUP, SIGINT) no longer
/// end it at once, in the middle of a file. What was ignored before stays so. There is one.
class EndRequests {
  public:
    EndRequests();
    ~EndRequests();
    EndRequests(const EndRequests&) = delete;
    EndRequests& operator=(const EndRequests&) = delete;

    /// A descriptor that becomes readable with the first request, and stays so; -1 where none can
    /// be received.
    [[nodiscard]] int Descriptor() const { return reading_; }

  private:
    int reading_ = -1;
};

} // namespace zr5
