#pragma once

// The machine's own parts, made in the order in which they need each other.

#include "app/program.h"
#include "libs/cipher/zr5_engine.h"
#include "libs/filekit/zr5_file_kit.h"

namespace zr5 {

struct MachineParts {
    SystemClock clock;
    SystemRandom random;
    std::unique_ptr<FileSystem> fileSystem = MakeSystemFileSystem();
    std::unique_ptr<CipherEngine> engine = MakeCipherEngine(*fileSystem, clock, random);
    std::unique_ptr<FileKit> fileKit = MakeFileKit(*fileSystem, random);

    /// What a program for this user is made of; the parts must outlive it.
    [[nodiscard]] Program::Surroundings For(UserPort& user, const std::string& executablePath,
                                            const std::string& configFolder) & {
        return {user, *fileSystem, *engine, *fileKit, clock, random, executablePath, configFolder};
    }
};

} // namespace zr5
