#pragma once

// What tests stand on: a disk that can be made to fail with a fresh folder on it, a user who
// follows a script and a clock that stands still; and on these, what some logic needs besides.

#include "libs/system/random.h"
#include "setup/setup_desk.h"
#include "support/fakes.h"
#include "support/faulty_file_system.h"
#include "support/scripted_user.h"
#include "support/temporary_folder.h"
#include "util/machine.h"

#include <gtest/gtest.h>
#include <memory>

namespace zr5::test {

class DiskTest : public testing::Test {
  protected:
    TemporaryFolder folder;
    std::unique_ptr<FileSystem> system = MakeSystemFileSystem();
    FaultyFileSystem disk{*system};
    SystemRandom random;
    ScriptedUser user;
    StoppedClock clock;
};

/// With the real file kit.
class KitTest : public DiskTest {
  protected:
    std::unique_ptr<FileKit> kit = MakeFileKit(disk, random);
};

/// With an engine and a file kit that answer what the test sets.
class MachineTest : public DiskTest {
  protected:
    TemporaryFolder config;
    FakeEngine engine;
    FakeKit kit;
    Machine machine{user, disk, engine, kit, clock, random, "/usr/bin/zr5e", config.Path()};
};

/// The notes for an output that is its input, as the shipped texts have them.
inline std::string EqualityNotes(ProgramText text) {
    return text == ProgramText::SameAsInputFolder ? "Same as input folder"
           : text == ProgramText::SameAsInputFile ? "Same as input file"
                                                  : "Same as input files";
}

/// With a setup desk as it is after a reset.
class DeskTest : public MachineTest {
  protected:
    DeskTest() { desk.ResetSetup(); }
    [[nodiscard]] std::string InputPath() const { return desk.Setup().FilePath(InputSide); }
    [[nodiscard]] std::string OutputPath() const { return desk.Setup().FilePath(OutputSide); }
    ControlView Control(const char* name) { return desk.Refresh().at(name); }
    std::string Text(const char* name) { return Control(name).text.value(); }

    SetupDesk desk{user, disk, EqualityNotes};
};

} // namespace zr5::test
