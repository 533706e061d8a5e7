#pragma once

// The whole program, joined: logic, windows and the machine they are given. The process around
// it (main.cpp), the tour and the end-to-end tests each give it a machine and a user.

#include "keys/current_key.h"
#include "libs/cipher/cipher_engine.h"
#include "libs/filekit/file_kit.h"
#include "libs/system/clock.h"
#include "libs/system/file_system.h"
#include "libs/system/random.h"
#include "util/user_port.h"

#include <memory>
#include <string>

class QWidget;

namespace zr5 {

class Program {
  public:
    /// Everything named outlives the program.
    struct Surroundings {
        UserPort& user;
        FileSystem& fileSystem;
        CipherEngine& engine;
        FileKit& fileKit;
        const Clock& clock;
        RandomSource& random;
        std::string executablePath; ///< real path; program texts and manual lie beside it
        std::string configFolder;   ///< of the user; the maker's folder is made in it
    };

    /// Loads the program texts and makes the main window, hidden.
    explicit Program(const Surroundings& surroundings);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// The steps of starting; shows the main window. False when the program cannot run and has
    /// said so.
    [[nodiscard]] bool Start();
    [[nodiscard]] QWidget& Window();
    [[nodiscard]] const CurrentKey& Key() const;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace zr5
