#include "app/shutdown.h"

#include "util/display.h"

namespace zr5 {
namespace {

bool UserWantsToQuit(const ProgramParts& program, const std::string& caption) {
    if (!program.desk.InputIsChosen()) return true;
    const std::string note =
        program.key.IsHeld() ? "The key will be erased from memory on quit.\r\n\r\n" : "";
    return program.user.Ask(Question(note + "Really quit?", caption)) == Answer::Yes;
}

void OfferToWipe(const ProgramParts& program, const std::string& path) {
    constexpr const char* Title = "Erase setup file?";
    if (!program.fileSystem.Info(path)) return;
    const Answer answer = program.user.Ask(Question("A setup-for-next-run file exists on disk.\r\n"
                                                    "Do you wish to wipe this file?",
                                                    Title, BoxIcon::Question, Answer::No));
    if (answer != Answer::Yes) return;
    if (program.fileKit.purge_file(path, PurgeOverwrite, true, false) < PurgeFailureLimit) {
        program.user.Ask(Notice("The file " + DisplayName(path) + " could not be wiped.", Title,
                                BoxIcon::Exclamation));
    }
}

} // namespace

bool QuitProgram(const ProgramParts& program, const std::string& nextRunSetupPath,
                 const std::string& caption) {
    if (!UserWantsToQuit(program, caption)) return false;
    program.engine.deallocate_buffers(); // and with them the engine's copy of the key
    DiscardKey(program.key);
    OfferToWipe(program, nextRunSetupPath);
    return true;
}

} // namespace zr5
