#pragma once

// Everything that the logic reaches beyond itself, in one bundle: it is made once, in `app`, and
// handed down; tests make it of fakes.

#include "libs/cipher/cipher_engine.h"
#include "libs/filekit/file_kit.h"
#include "libs/system/clock.h"
#include "libs/system/file_system.h"
#include "libs/system/random.h"
#include "util/user_port.h"

#include <string>

namespace zr5 {

struct Machine {
    UserPort& user;
    FileSystem& fileSystem;
    CipherEngine& engine;
    FileKit& fileKit;
    const Clock& clock;
    RandomSource& random;
    std::string executablePath; ///< real path; program texts and manual lie beside it
    /// The program's own folder of this user, ending in a separator: the setup for the next run
    /// and the journal of operations lie there.
    std::string ownFolder;
};

} // namespace zr5
