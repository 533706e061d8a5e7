#pragma once

// The program's start and end, step by step. At the start: program texts, a clean setup, the
// window, the engine's buffers, the setup of the last run, what an interrupted run has left, and a
// word to a new user. At the end: the questions before it, and what must not stay in memory or on
// the disk.

#include "keys/current_key.h"
#include "setup/setup_store.h"
#include "util/machine.h"

#include <functional>
#include <string>
#include <string_view>

namespace zr5 {

/// The program's own folder, ending in a separator: the maker's folder below `configFolder`, the
/// user's folder for application data (the root when it is empty). Both are made when missing;
/// where that fails the path is returned all the same, and saving there will fail. So it is where
/// the folder is somebody else's: whoever reads a file there asks `WhyForeignFile` first.
[[nodiscard]] std::string MakeOwnFolder(FileSystem& fileSystem, const std::string& configFolder);

/// The name of the program-text file beside an executable of this name.
[[nodiscard]] std::string ProgramTextFileName(std::string_view executableName);

/// The first step, before there is a window: loads the texts beside the executable.
void LoadTextsBesideExecutable(const Machine& machine);

/// The window's part in the start.
struct WindowSteps {
    std::function<void()> fitToScreen;
    std::function<void()> startClock;
    std::function<void()> show;
};

/// All the other steps. False when the program cannot run and has said so.
[[nodiscard]] bool StartProgram(Machine& machine, SetupDesk& desk, SetupStore& setups,
                                CurrentKey& key, const WindowSteps& window);

/// The steps of quitting that need no answer: nothing of a key stays in memory.
void ForgetKey(Machine& machine, CurrentKey& key);

/// Runs the steps of quitting. False when the user wants to stay; nothing has changed then.
/// `caption` titles the question.
[[nodiscard]] bool QuitProgram(Machine& machine, const SetupDesk& desk, const SetupStore& setups,
                               CurrentKey& key, const std::string& caption);

} // namespace zr5
