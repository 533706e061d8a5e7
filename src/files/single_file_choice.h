#pragma once

// Choosing the single input file and its output: what the pickers ask, and which choices are
// refused.

#include "libs/file_system.h"
#include "setup/setup_desk.h"
#include "util/user_port.h"

#include <string>
#include <string_view>

namespace zr5 {

class SingleFileChoice {
  public:
    SingleFileChoice(UserPort& user, FileSystem& fileSystem, SetupDesk& desk)
        : user_(user), fileSystem_(fileSystem), desk_(desk) {}

    /// `buttonCaption` is the title of the box that explains a refusal. A file chosen through a
    /// link becomes the file itself. A cancelled picker or a refusal changes nothing.
    void ChooseInput(const std::string& buttonCaption);
    /// The picker asks before an existing file is chosen. A file that is the input by another
    /// name counts as the input.
    void ChooseOutput(const std::string& buttonCaption);

  private:
    void Refuse(const std::string& path, std::string_view reason, const std::string& title);

    UserPort& user_;
    FileSystem& fileSystem_;
    SetupDesk& desk_;
};

} // namespace zr5
