#include "app/start_and_quit.h"

#include "operation/interrupted_operation.h"
#include "setup/identity.h"
#include "util/display.h"
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

bool UserWantsToQuit(const Machine& machine, const SetupDesk& desk, const CurrentKey& key,
                     const std::string& caption) {
    if (!desk.InputIsChosen()) return true;
    const std::string note =
        key.IsHeld() ? "The key will be erased from memory on quit.\r\n\r\n" : "";
    return machine.user.Ask(Question(note + "Really quit?", caption)) == Answer::Yes;
}

void OfferToWipe(const Machine& machine, const std::string& path) {
    constexpr const char* Title = "Erase setup file?";
    if (!machine.fileSystem.Info(path)) return;
    const Answer answer = machine.user.Ask(Question("A setup-for-next-run file exists on disk.\r\n"
                                                    "Do you wish to wipe this file?",
                                                    Title, BoxIcon::Question, Answer::No));
    if (answer != Answer::Yes) return;
    const PurgeResult result = machine.fileKit.purge_file(path, PurgeMode::OverwriteAndDelete, {});
    if (result != PurgeResult::Done) {
        machine.user.Ask(Notice("The file " + DisplayName(path) + " could not be wiped.", Title,
                                BoxIcon::Exclamation));
    }
}

} // namespace

std::string MakeOwnFolder(FileSystem& fileSystem, const std::string& configFolder) {
    const std::string base = configFolder.empty() ? "/" : WithTrailingSeparator(configFolder);
    std::string folder = WithTrailingSeparator(base + MakerName);
    for (const std::string& each : {base, folder}) {
        const auto found = fileSystem.Info(each);
        // What an administrator makes in a user's folder would not be the user's.
        const bool isTheirs = found && !found->isOwnedByUser;
        if (isTheirs || (!found && fileSystem.MakeFolder(each) != FsStatus::Ok)) break;
    }
    return folder;
}

std::string ProgramTextFileName(std::string_view executableName) {
    std::string name = LowerCaseWithAccents(executableName);
    if (name.ends_with(".exe")) name.resize(name.size() - 4);
    return name + ".dat";
}

void LoadTextsBesideExecutable(const Machine& machine) {
    const PathParts executable = SplitPath(machine.executablePath);
    LoadProgramText(machine.fileKit, machine.user, executable.folder,
                    ProgramTextFileName(executable.name));
}

bool StartProgram(Machine& machine, SetupDesk& desk, SetupStore& setups, CurrentKey& key,
                  const WindowSteps& window) {
    desk.ResetSetup();
    window.fitToScreen();
    window.startClock();
    if (!machine.engine.allocate_buffers()) {
        machine.user.Ask(Notice("Attempt to allocate buffers was unsuccessful!", "Fatal error",
                                BoxIcon::Critical));
        return false;
    }
    setups.LoadSetupOfLastRun();
    EraseKey(key, machine.engine);
    window.show();
    FinishInterruptedOperations(machine);
    if (!desk.InputIsChosen()) machine.user.Ask(StartupMessage());
    desk.FinishStartup();
    return true;
}

void ForgetKey(Machine& machine, CurrentKey& key) {
    EraseKey(key, machine.engine);
    machine.engine.deallocate_buffers();
}

bool QuitProgram(Machine& machine, const SetupDesk& desk, const SetupStore& setups, CurrentKey& key,
                 const std::string& caption) {
    if (!UserWantsToQuit(machine, desk, key, caption)) return false;
    ForgetKey(machine, key);
    OfferToWipe(machine, setups.NextRunSetupPath());
    return true;
}

} // namespace zr5
