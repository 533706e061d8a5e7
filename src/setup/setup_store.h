#pragma once

// Saves the setup of the desk and loads it again: the setup for the next run, and operation files
// that the user names.

#include "libs/system/file_system.h"
#include "libs/system/random.h"
#include "setup/setup_desk.h"
#include "setup/setup_files.h"
#include "util/user_port.h"

#include <functional>
#include <string>

namespace zr5 {

class SetupStore final : public SetupFiles {
  public:
    /// Everything named outlives the store.
    SetupStore(UserPort& user, FileSystem& fileSystem, RandomSource& random, SetupDesk& desk,
               std::string nextRunSetupPath);

    /// Replaces the whole setup, first by a reset one. After a failure the desk holds what could be
    /// read, with labels that say so.
    [[nodiscard]] bool LoadSetup(const std::string& path) override;
    /// False when the file could not be written whole (one that was there is untouched then), and
    /// when the setup disagrees with its labels or cannot be written in this format.
    [[nodiscard]] bool SaveSetup(const std::string& path);

    /// The three buttons. `pickerClosed` is called as soon as the file picker has gone, `refresh`
    /// when a load has failed, before the question what to do with what was read.
    void LoadOperationFile(const std::function<void()>& pickerClosed,
                           const std::function<void()>& refresh);
    void SaveAsOperationFile(const std::function<void()>& pickerClosed);
    void SaveForNextRun();

  private:
    UserPort& user_;
    FileSystem& fileSystem_;
    RandomSource& random_;
    SetupDesk& desk_;
    std::string nextRunSetupPath_;
};

} // namespace zr5
