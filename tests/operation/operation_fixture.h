#pragma once

// An operation on real files in a fresh folder, with an engine and a file kit that answer what
// the test sets, unless it takes the real ones.

#include "operation/operation_run.h"
#include "support/fixtures.h"

#include <fstream>

namespace zr5::test {

inline MessageBox ReportFullQuestion() {
    return Question("The output report buffer has been filled, so this report cannot continue.\r\n"
                    "The operation, however, may continue, but without report of results for "
                    "individual files.\r\nIt is recommended to continue the operation.  "
                    "Do you wish to continue?",
                    "Report buffer full", BoxIcon::Exclamation);
}

class OperationTest : public MachineTest {
  protected:
    OperationTest() {
        key.keyText = SecretBytes::CopyOf(std::string_view("ABCDEFGHIJKLMNOP"));
        key.keyState = KeyState::Keyboard;
        key.checksum = 6304;
        engine.onFile = [this](const std::string& input, const std::string& output) {
            std::ofstream(output) << "result of " << input;
        };
        kit.onPurge = [this](const std::string& path) {
            if (kit.purgeResult == PurgeResult::Done) static_cast<void>(disk.Remove(path));
        };
    }

    /// A single file of the folder as the input, worked on in place.
    void ChooseInput(const std::string& name) {
        setup.Folder = {folder.Path(), folder.Path()};
        setup.FileName = {name, name};
        list = {};
        list.AddFile(folder / name, folder / name);
    }
    void ChooseOutput(const std::string& name) {
        setup.OutputMode = OutputTarget::SeparateOutput;
        setup.FileName[OutputSide] = name;
        list = {};
        list.AddFile(setup.FilePath(InputSide), folder / name);
    }

    [[nodiscard]] OperationContext Context() {
        return {setup, key, list, machine, screen, journal};
    }

    OperationSetup setup;
    CurrentKey key;
    WorkList list;
    ReportScreen screen{user, clock};
    OperationJournal journal{disk};
};

} // namespace zr5::test
