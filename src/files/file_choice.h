#pragma once

// Choosing what is worked on and where the result goes: the single file and its output, and the
// input folder; what the pickers ask, and which choices are refused.

#include "files/folder_walk.h"
#include "libs/system/file_system.h"
#include "setup/setup_desk.h"
#include "util/user_port.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace zr5 {

/// `path` with what follows the last "." of its name replaced; a name without one, or with none
/// but the "." at its start, gets the extension added.
[[nodiscard]] std::string PathWithExtension(const std::string& path, const std::string& extension);

/// What the user reads when a file must never become an output; nothing for any other file.
using OutputRefusal = std::function<std::optional<MessageBox>(const std::string& outputPath)>;

class SingleFileChoice {
  public:
    /// `refusal` may be empty.
    SingleFileChoice(UserPort& user, FileSystem& fileSystem, SetupDesk& desk,
                     OutputRefusal refusal = {})
        : user_(user), fileSystem_(fileSystem), desk_(desk), refusal_(std::move(refusal)) {}

    /// `buttonCaption` is the title of the box that explains a refusal. A file chosen through a
    /// link becomes the file itself. A cancelled picker or a refusal changes nothing.
    void ChooseInput(const std::string& buttonCaption);
    /// The three ways to an output file; true when there is one now. A file that is the input by
    /// another name counts as the input. The picker suggests the usual name and asks before an
    /// existing file is chosen.
    bool ChooseOutput(const std::string& buttonCaption);
    /// The user knows that the file will be overwritten, and is not asked.
    bool ChooseExistingOutput(const std::string& buttonCaption);
    /// Folder and name of the input, but with this extension. Asks when that file exists.
    bool NameOutputByExtension(const std::string& extension, const std::string& buttonCaption);

  private:
    enum class Overwriting { AskFirst, Agreed };
    [[nodiscard]] std::string UsualOutputName() const;
    [[nodiscard]] std::optional<std::string> PickOutput(FilePicker::Kind kind);
    bool TakeOutput(const std::string& path, Overwriting overwriting,
                    const std::string& buttonCaption);

    UserPort& user_;
    FileSystem& fileSystem_;
    SetupDesk& desk_;
    OutputRefusal refusal_;
};

class FolderChoice {
  public:
    FolderChoice(Machine& machine, SetupDesk& desk) : machine_(machine), desk_(desk) {}

    /// `buttonCaption` is the title of the box that refuses a forbidden folder, or what is no
    /// folder or not there. A cancelled picker or a refusal changes nothing, and neither does a
    /// search for files that the user stops, which a box tells, or that `stopped` ends.
    void ChooseInput(const std::string& buttonCaption, const StopAsked& stopped);

  private:
    Machine& machine_;
    SetupDesk& desk_;
};

} // namespace zr5
