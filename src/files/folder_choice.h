#pragma once

// Choosing the input folder: which folders are refused, and what is said of them.

#include "files/folder_walk.h"
#include "libs/system/file_system.h"
#include "setup/setup_desk.h"
#include "util/user_port.h"

#include <string>

namespace zr5 {

class FolderChoice {
  public:
    FolderChoice(UserPort& user, FileSystem& fileSystem, SetupDesk& desk)
        : user_(user), fileSystem_(fileSystem), desk_(desk) {}

    /// `buttonCaption` is the title of the box that refuses a forbidden folder. A cancelled picker
    /// or a refusal changes nothing, and neither does a search for files that `stopped` ends.
    void ChooseInput(const std::string& buttonCaption, const StopAsked& stopped);

  private:
    UserPort& user_;
    FileSystem& fileSystem_;
    SetupDesk& desk_;
};

} // namespace zr5
