#pragma once

// A setup desk as it is after a reset, on a disk that can be made to fail, with a fresh folder.

#include "setup/setup_desk.h"
#include "support/faulty_file_system.h"
#include "support/scripted_user.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <memory>

namespace zr5::test {

/// The notes for an output that is its input, as the shipped texts have them.
inline std::string EqualityNotes(ProgramText text) {
    return text == ProgramText::SameAsInputFolder ? "Same as input folder"
           : text == ProgramText::SameAsInputFile ? "Same as input file"
                                                  : "Same as input files";
}

class DeskTest : public testing::Test {
  protected:
    DeskTest() { desk.ResetSetup(); }
    [[nodiscard]] std::string InputPath() const { return desk.Setup().FilePath(InputSide); }
    [[nodiscard]] std::string OutputPath() const { return desk.Setup().FilePath(OutputSide); }
    ControlView Control(const char* name) { return desk.Refresh().at(name); }
    std::string Text(const char* name) { return Control(name).text.value(); }

    TemporaryFolder folder;
    ScriptedUser user;
    std::unique_ptr<FileSystem> system = MakeSystemFileSystem();
    FaultyFileSystem disk{*system};
    SetupDesk desk{user, disk, EqualityNotes};
};

} // namespace zr5::test
