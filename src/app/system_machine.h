#pragma once

// The machine's own parts, made in the order in which they need each other.

#include "app/start_and_quit.h"

namespace zr5 {

struct SystemMachine {
    SystemClock clock;
    SystemRandom random;
    std::unique_ptr<FileSystem> fileSystem = MakeSystemFileSystem();
    std::unique_ptr<CipherEngine> engine = MakeCipherEngine(*fileSystem, clock, random);
    std::unique_ptr<FileKit> fileKit = MakeFileKit(*fileSystem, random);

    /// The machine as a program sees it; the parts must outlive it. `configFolder` is the user's
    /// folder for application data.
    [[nodiscard]] Machine For(UserPort& user, const std::string& executablePath,
                              const std::string& configFolder) & {
        return {user,  *fileSystem, *engine,        *fileKit,
                clock, random,      executablePath, MakeOwnFolder(*fileSystem, configFolder)};
    }
};

} // namespace zr5
