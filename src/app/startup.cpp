#include "app/startup.h"

#include "app/next_run_setup.h"
#include "operation/interrupted_operation.h"
#include "util/paths.h"
#include "util/program_text.h"
#include "util/text.h"

namespace zr5 {
namespace {

MessageBox StartupMessage() {
    return Notice("1. Select 'Encrypt' or 'Decrypt'\r\n"
                  "2. Select 'Single file' or 'Files in a folder'\r\n"
                  "3. Select the input file or folder\r\n\r\n"
                  "For more help click on the 'Help on startup' button.",
                  "Startup", BoxIcon::Information);
}

void LoadSetupOfLastRun(const ProgramParts& program, const std::string& path) {
    if (program.setupFiles == nullptr || !program.fileSystem.Info(path)) return;
    if (!program.setupFiles->LoadSetup(path) || program.desk.CheckLabels() != 0)
        program.desk.ResetSetup();
}

} // namespace

std::string ProgramTextFileName(std::string_view executableName) {
    std::string name = LowerCaseWithAccents(executableName);
    if (name.ends_with(".exe")) name.resize(name.size() - 4);
    return name + ".dat";
}

void LoadTextsBesideExecutable(UserPort& user, FileKit& fileKit,
                               const std::string& executablePath) {
    const PathParts executable = SplitPath(executablePath);
    LoadProgramText(fileKit, user, executable.folder, ProgramTextFileName(executable.name));
}

bool StartProgram(const ProgramParts& program, const WindowSteps& window,
                  const std::string& nextRunSetupPath) {
    program.desk.ResetSetup();
    window.fitToScreen();
    window.startClock();
    if (program.engine.allocate_buffers() == 0) {
        program.user.Ask(Notice("Attempt to allocate buffers was unsuccessful!", "Fatal error",
                                BoxIcon::Critical));
        return false;
    }
    LoadSetupOfLastRun(program, nextRunSetupPath);
    DiscardKey(program.key);
    window.show();
    FinishInterruptedOperations(program.fileSystem, program.fileKit, program.user,
                                JournalPath(nextRunSetupPath));
    if (!program.desk.InputIsChosen()) program.user.Ask(StartupMessage());
    program.desk.FinishStartup();
    return true;
}

} // namespace zr5
