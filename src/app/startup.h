#pragma once

// The program's start, step by step: program texts, a clean setup, the window, the engine's
// buffers, the setup of the last run, what an interrupted run has left, and a word to a new user.

#include "keys/current_key.h"
#include "libs/cipher/cipher_engine.h"
#include "libs/filekit/file_kit.h"
#include "libs/system/file_system.h"
#include "setup/setup_desk.h"
#include "setup/setup_files.h"
#include "util/user_port.h"

#include <functional>
#include <string>

namespace zr5 {

/// What starting and ending the program work with.
struct ProgramParts {
    UserPort& user;
    FileSystem& fileSystem;
    CipherEngine& engine;
    FileKit& fileKit;
    CurrentKey& key;
    SetupDesk& desk;
    /// Reads the setup of the last run; null: this program keeps none.
    SetupFiles* setupFiles = nullptr;
};

/// The window's part in the start.
struct WindowSteps {
    std::function<void()> fitToScreen;
    std::function<void()> startClock;
    std::function<void()> show;
};

/// The name of the program-text file beside an executable of this name.
[[nodiscard]] std::string ProgramTextFileName(std::string_view executableName);

/// The first step, before there is a window: loads the texts beside the executable.
void LoadTextsBesideExecutable(UserPort& user, FileKit& fileKit, const std::string& executablePath);

/// All the other steps. False when the program cannot run and has said so.
[[nodiscard]] bool StartProgram(const ProgramParts& program, const WindowSteps& window,
                                const std::string& nextRunSetupPath);

} // namespace zr5
