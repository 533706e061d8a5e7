#pragma once

// Work that may take long is shown to the user, but only once somebody may wonder why the program
// does not answer.

#include "libs/system/clock.h"
#include "util/user_port.h"

#include <chrono>

namespace zr5 {

/// Begins when it is made. Half a second later it is time to show the work, and from then on again
/// every 50 ms. Its end takes away what is shown. User and clock outlive it.
class WorkShown {
  public:
    WorkShown(UserPort& user, const Clock& clock)
        : user_(user), clock_(clock), nextShowing_(clock.Now() + ShownAfter) {}
    ~WorkShown() {
        if (isShown_) user_.EndWork();
    }
    WorkShown(const WorkShown&) = delete;
    WorkShown& operator=(const WorkShown&) = delete;

    [[nodiscard]] bool IsTimeToShow() const { return clock_.Now() >= nextShowing_; }
    void Show(const LongWork& work) {
        isShown_ = true;
        user_.ShowWork(work);
        nextShowing_ = clock_.Now() + ProgressInterval;
    }

  private:
    static constexpr std::chrono::milliseconds ShownAfter{500};
    UserPort& user_;
    const Clock& clock_;
    std::chrono::milliseconds nextShowing_;
    bool isShown_ = false;
};

} // namespace zr5
