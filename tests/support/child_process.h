#pragma once

// Real processes that die where a test wants them to: what a crash or a forced end leaves on
// the disk is then seen, not argued.

#include <functional>

namespace zr5::test {

/// Runs `work` in a child process that is killed (SIGKILL) just before it would make its
/// `number`-th system call, counted from 1. True when it was; false when `work` returned before
/// that. Throws std::runtime_error when the child cannot be made or watched, or ended otherwise.
/// No other thread may run.
[[nodiscard]] bool KilledAtSystemCall(unsigned number, const std::function<void()>& work);

} // namespace zr5::test
