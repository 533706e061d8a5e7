#include "libs/system/process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace zr5 {
namespace {

constexpr std::array EndSignals{SIGTERM, SIGHUP, SIGINT};

volatile std::sig_atomic_t writingEnd = -1; ///< of the pipe to whoever ends the program

/// A handler may do no more than this.
void PassOn(int /*signal*/) {
    const int error = errno;
    const char byte = 0;
    static_cast<void>(!write(writingEnd, &byte, 1));
    errno = error;
}

} // namespace

void ForbidCoreDumps() noexcept {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
}

void SurviveFileSizeLimit() noexcept {
    std::signal(SIGXFSZ, SIG_IGN);
}

std::uint64_t ProcessNumber() noexcept {
    return static_cast<std::uint64_t>(getpid());
}

EndRequests::EndRequests() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
    reading_ = ends[0];
    writingEnd = ends[1];
    struct sigaction action {};
    action.sa_handler = PassOn;
    action.sa_flags = SA_RESTART;
    for (const int signal : EndSignals) {
        struct sigaction before {};
        const bool known = sigaction(signal, nullptr, &before) == 0;
        if (known && before.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);
    }
}

EndRequests::~EndRequests() {
    if (reading_ < 0) return;
    for (const int signal : EndSignals) {
        struct sigaction now {};
        const bool isOurs = sigaction(signal, nullptr, &now) == 0 && now.sa_handler == PassOn;
        if (isOurs) std::signal(signal, SIG_DFL);
    }
    close(writingEnd);
    close(reading_);
}

} // namespace zr5
