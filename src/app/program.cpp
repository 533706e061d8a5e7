#include "app/program.h"

#include "app/start_and_quit.h"
#include "app/web_link.h"
#include "operation/measure/randomness_report.h"
#include "operation/operations.h"
#include "setup/setup_desk.h"
#include "setup/setup_store.h"
#include "ui/main_window.h"
#include "util/paths.h"
#include "util/program_text.h"

namespace zr5 {

struct Program::Parts {
    explicit Parts(const Machine& around)
        : machine(around),
          desk(machine.user, machine.fileSystem,
               [this](ProgramText text) { return GetProgramText(machine.fileKit, text); }),
          setups(machine, desk),
          operations(desk, key, machine),
          randomness(desk, machine),
          window({machine, desk, setups, key, operations, randomness, [this] { OpenManual(); },
                  [this](const std::string& caption) { return Quit(caption); }}) {}

    bool Quit(const std::string& caption) {
        if (!isEnded) return QuitProgram(machine, desk, setups, key, caption);
        ForgetKey(machine, key);
        return true;
    }

    /// The maker's page, too, is the manual that comes with the program.
    void OpenManual() {
        OpenWebLink(machine.user,
                    FileAddress(SplitPath(machine.executablePath).folder + "manual/index.html"));
    }

    Machine machine;
    CurrentKey key;
    SetupDesk desk;
    SetupStore setups;
    Operations operations;
    RandomnessReport randomness;
    bool isEnded = false; ///< from outside
    MainWindow window;
};

Program::Program(const Machine& machine) {
    LoadTextsBesideExecutable(machine);
    parts_ = std::make_unique<Parts>(machine);
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
    return StartProgram(parts_->machine, parts_->desk, parts_->setups, parts_->key, steps);
}

void Program::EndFromOutside() {
    parts_->isEnded = true;
    parts_->operations.RequestStopAtOnce();
    parts_->window.close(); // or, while something runs, afterwards
}

bool Program::HasEnded() const {
    return parts_->isEnded;
}

QWidget& Program::Window() {
    return parts_->window;
}

const CurrentKey& Program::Key() const {
    return parts_->key;
}

} // namespace zr5
