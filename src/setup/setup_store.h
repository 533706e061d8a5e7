#pragma once

// Saves the setup of the desk and loads it again: the setup for the next run, and operation files
// that the user names.

#include "setup/identity.h"
#include "setup/setup_desk.h"
#include "util/machine.h"

#include <functional>
#include <string>

namespace zr5 {

class SetupStore {
  public:
    /// Both outlive the store.
    SetupStore(Machine& machine, SetupDesk& desk) : machine_(machine), desk_(desk) {}

    /// Replaces the whole setup, first by a reset one. After a failure the desk holds what could be
    /// read, with labels that say so.
    [[nodiscard]] bool LoadSetup(const std::string& path);
    /// At the start of the program: as LoadSetup with the setup for the next run, if there is one;
    /// the setup stays reset when it fails to load or disagrees with its labels. One that somebody
    /// else may have written is not loaded, and a box says why.
    void LoadSetupOfLastRun();
    /// False when the file could not be written whole (one that was there is untouched then), and
    /// when the setup disagrees with its labels or cannot be written in this format.
    [[nodiscard]] bool SaveSetup(const std::string& path);

    /// The three buttons. `pickerClosed` is called as soon as the file picker has gone, `refresh`
    /// when a load has failed, before the question what to do with what was read.
    void LoadOperationFile(const std::function<void()>& pickerClosed,
                           const std::function<void()>& refresh);
    void SaveAsOperationFile(const std::function<void()>& pickerClosed);
    /// Refuses a folder that is not this user's alone, where it would not be loaded either.
    void SaveForNextRun();

    /// Where the setup for the next run lies.
    [[nodiscard]] std::string NextRunSetupPath() const {
        return machine_.ownFolder + NextRunSetupName;
    }

  private:
    [[nodiscard]] bool Take(OpenFile& file);

    Machine& machine_;
    SetupDesk& desk_;
};

} // namespace zr5
