#include "libs/system/secret.h"

#include <csignal>
#include <sys/prctl.h>
#include <sys/resource.h>

namespace zr5 {

void ForbidCoreDumps() noexcept {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
}

void SurviveFileSizeLimit() noexcept {
    std::signal(SIGXFSZ, SIG_IGN);
}

} // namespace zr5
