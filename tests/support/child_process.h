#pragma once

// Real processes that die where a test wants them to: what a crash or a forced end leaves on
// the disk is then seen, not argued.

#include <functional>
#include <string>
#include <vector>

namespace zr5::test {

/// Runs `work` in a child process that is killed (SIGKILL) just before it would make its
/// `number`-th system call, counted from 1. True when it was; false when `work` returned before
/// that. Throws std::runtime_error when the child cannot be made or watched, or ended otherwise.
/// No other thread may run.
[[nodiscard]] bool KilledAtSystemCall(unsigned number, const std::function<void()>& work);

/// Runs `work` in a child process that may do no more than an ordinary user; run as root, that is
/// nobody, to whom `paths` are given before. What `work` returns.
[[nodiscard]] bool AsOrdinaryUser(const std::vector<std::string>& paths,
                                  const std::function<bool()>& work);

} // namespace zr5::test
