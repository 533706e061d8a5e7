#include "app/program.h"

#include "app/next_run_setup.h"
#include "app/program_links.h"
#include "app/startup.h"
#include "files/folder_choice.h"
#include "files/single_file_choice.h"
#include "files/specify_input_files.h"
#include "files/specify_output_files.h"
#include "keys/keyfile_choice.h"
#include "operation/picture_file.h"
#include "operation/randomness_report.h"
#include "setup/setup_desk.h"
#include "setup/setup_store.h"
#include "ui/graphic_window.h"
#include "ui/inspect_key_window.h"
#include "ui/key_dialogs.h"
#include "ui/main_window.h"
#include "ui/operation_desk.h"
#include "ui/random_key_window.h"
#include "ui/specify_files_window.h"
#include "util/program_text.h"

namespace zr5 {

struct Program::Parts {
    explicit Parts(const Surroundings& around)
        : desk(
              around.user, around.fileSystem,
              [&kit = around.fileKit](std::int16_t number) { return GetProgramText(kit, number); }),
          singleFile(around.user, around.fileSystem, desk),
          folder(around.user, around.fileSystem, desk),
          nextRunSetupPath(NextRunSetupPath(around.fileSystem, around.configFolder)),
          setupStore(around.user, around.fileSystem, around.random, desk, nextRunSetupPath),
          program{around.user, around.fileSystem, around.engine, around.fileKit, key,
                  desk,        &setupStore},
          links(program, around.executablePath, nextRunSetupPath),
          machine{around.fileSystem,
                  around.engine,
                  around.fileKit,
                  around.user,
                  around.clock,
                  around.executablePath,
                  JournalPath(nextRunSetupPath)},
          operations(desk, key, machine, around.random),
          randomness(desk, machine),
          window({around.user, desk, singleFile, folder, key, around.engine, operations, links,
                  [this](QWidget& parent) { TypeKeyWithDisplay(parent); },
                  [this](QWidget& parent) { TypeKeyWithoutDisplay(parent); },
                  [this](QWidget& parent, KeyfileMode mode) { UseKeyfile(parent, mode); },
                  [this](QWidget& parent) { ChooseInputFiles(parent); },
                  [this](QWidget& parent) { ChooseOutputFile(parent); }, &randomness,
                  [this](QWidget& parent, const std::string& path) { ShowGraphic(parent, path); },
                  &setupStore}),
          random(around.random) {
        operations.SetMainWindow(&window);
    }

    void TypeKeyWithDisplay(QWidget& parent) {
        const bool wasHeld = key.IsHeld();
        GetKeyFromKeyboardWithDisplay(&parent, desk.Setup().Operation, key);
        ForgetDiscardedKey(wasHeld);
    }
    void TypeKeyWithoutDisplay(QWidget& parent) {
        const bool wasHeld = key.IsHeld();
        InspectInWindow inspector(&parent, program.user, program.fileKit);
        GetKeyFromKeyboardWithoutDisplay(&parent, program.user, desk.Setup().Operation, key,
                                         inspector);
        ForgetDiscardedKey(wasHeld);
    }
    void UseKeyfile(QWidget& parent, KeyfileMode mode) {
        const bool wasHeld = key.IsHeld();
        InspectInWindow inspector(&parent, program.user, program.fileKit);
        CollectInWindow collector(&parent, machine.clock, random);
        const KeyfileTools tools{program.user, program.fileSystem, program.engine, program.fileKit,
                                 random,       inspector,          collector};
        GetKeyFromKeyfile(mode, desk.Setup().Operation, tools, key);
        ForgetDiscardedKey(wasHeld);
    }
    void ChooseInputFiles(QWidget& parent) {
        SpecifyInputFiles rules(program.user, desk);
        SpecifyFilesWindow(rules, SpecifyInputNames, &parent).exec();
    }
    void ChooseOutputFile(QWidget& parent) {
        SpecifyOutputFiles rules(program.user, program.fileSystem, desk, singleFile);
        SpecifyFilesWindow(rules, SpecifyOutputNames, &parent).exec();
    }
    void ShowGraphic(QWidget& parent, const std::string& path) {
        BytePairPicture rules(machine.fileSystem, machine.user, machine.clock, path);
        const auto save = [&](std::span<const std::byte> png) {
            SavePicture(machine.fileSystem, random, machine.user, path, png);
        };
        GraphicWindow(rules, save, &parent).exec();
    }
    /// A key that the user has discarded or replaced must not live on in the engine; one that
    /// was kept is handed to it again with the next file.
    void ForgetDiscardedKey(bool wasHeld) {
        if (wasHeld) program.engine.operation_initialization({}, EngineEncrypt, 0, 0);
    }

    CurrentKey key;
    SetupDesk desk;
    SingleFileChoice singleFile;
    FolderChoice folder;
    std::string nextRunSetupPath;
    SetupStore setupStore;
    ProgramParts program;
    ProgramLinks links;
    Machine machine;
    OperationDesk operations;
    RandomnessReport randomness;
    MainWindow window;
    RandomSource& random;
};

Program::Program(const Surroundings& surroundings) {
    LoadTextsBesideExecutable(surroundings.user, surroundings.fileKit, surroundings.executablePath);
    parts_ = std::make_unique<Parts>(surroundings);
}

Program::~Program() = default;

bool Program::Start() {
    MainWindow& window = parts_->window;
    const WindowSteps steps{[&] { window.FitToScreen(); }, [&] { window.StartClock(); },
                            [&] {
                                window.Refresh();
                                window.RefreshKeyLabels();
                                window.show();
                            }};
    return StartProgram(parts_->program, steps, parts_->nextRunSetupPath);
}

QWidget& Program::Window() {
    return parts_->window;
}

const CurrentKey& Program::Key() const {
    return parts_->key;
}

} // namespace zr5
