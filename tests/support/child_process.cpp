#include "support/child_process.h"

#include <csignal>
#include <stdexcept>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zr5::test {
namespace {

/// With PTRACE_O_TRACESYSGOOD a stop at a system call shows as this signal.
constexpr int SystemCallStop = SIGTRAP | 0x80;
constexpr int NoFailure = 0;
constexpr int Threw = 2;

[[noreturn]] void BeTheChild(const std::function<void()>& work) {
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(Threw);
    static_cast<void>(raise(SIGSTOP)); // until the parent watches
    try {
        work();
    } catch (...) {
        _exit(Threw);
    }
    _exit(NoFailure);
}

int WaitFor(pid_t child) {
    int status = 0;
    if (waitpid(child, &status, 0) != child) throw std::runtime_error("child lost");
    return status;
}

/// Lets the child run to its next stop, handing it a signal unless that is 0.
int RunToNextStop(pid_t child, int signal) {
    if (ptrace(PTRACE_SYSCALL, child, nullptr, signal) != 0)
        throw std::runtime_error("child cannot go on");
    return WaitFor(child);
}

} // namespace

bool KilledAtSystemCall(unsigned number, const std::function<void()>& work) {
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("no child process");
    if (child == 0) BeTheChild(work);

    int status = WaitFor(child);
    if (!WIFSTOPPED(status) ||
        ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL) != 0)
        throw std::runtime_error("child cannot be watched");
    unsigned entered = 0;
    bool inside = false; // the stops come in pairs: entering a call and leaving it
    int signal = 0;
    while (true) {
        status = RunToNextStop(child, signal);
        if (!WIFSTOPPED(status)) break;
        signal = WSTOPSIG(status);
        if (signal != SystemCallStop) continue;
        signal = 0;
        inside = !inside;
        if (inside && ++entered == number) {
            // The call that the child is about to enter is not made any more.
            static_cast<void>(kill(child, SIGKILL));
            status = WaitFor(child);
            if (!WIFSIGNALED(status)) throw std::runtime_error("child not killed");
            return true;
        }
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != NoFailure)
        throw std::runtime_error("child failed");
    return false;
}

bool AsOrdinaryUser(const std::vector<std::string>& paths, const std::function<bool()>& work) {
    constexpr uid_t Nobody = 65534;
    const bool isRoot = geteuid() == 0;
    for (const std::string& path : paths)
        if (isRoot && chown(path.c_str(), Nobody, Nobody) != 0)
            throw std::runtime_error("file cannot be given away");
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("no child process");
    if (child == 0) {
        if (isRoot && (setgid(Nobody) != 0 || setuid(Nobody) != 0)) _exit(Threw);
        _exit(work() ? NoFailure : Threw);
    }
    const int status = WaitFor(child);
    return WIFEXITED(status) && WEXITSTATUS(status) == NoFailure;
}

} // namespace zr5::test
