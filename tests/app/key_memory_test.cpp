// What is left of a key in the memory of the process after it was typed, used and erased. See
// docs/key-memory.md for what is done and what cannot be.

#include "app/kept_memory.h"
#include "app/machine_parts.h"
#include "support/memory_search.h"
#include "support/scripted_user.h"
#include "support/temporary_folder.h"
#include "support/window_driver.h"

#include <array>
#include <filesystem>
#include <gtest/gtest.h>
#include <iostream>
#include <QLineEdit>
#include <sys/wait.h>
#include <unistd.h>

namespace zr5::test {
namespace {

MaskedLetters NewSecret() {
    constexpr std::size_t Length = 24;
    SystemRandom random;
    MaskedLetters secret;
    while (secret.size() < Length) {
        std::array<std::byte, 1> drawn{};
        random.Fill(drawn);
        secret.Add(static_cast<char>('a' + std::to_integer<int>(drawn[0]) % 26));
    }
    return secret;
}

/// What of `places` is no locked memory of the key's own: text of the toolkit, heap, stack.
std::vector<std::string> Unlocked(std::vector<std::string> places) {
    std::erase_if(places, [](const std::string& place) {
        return place.find('[') == std::string::npos && place.find("width 1 ") != std::string::npos;
    });
    return places;
}

void ExpectNone(const char* when, const std::vector<std::string>& places) {
    for (const std::string& place : places)
        std::cerr << place << '\n';
    if (!places.empty()) throw std::runtime_error(std::string("a trace is left ") + when);
}

/// Types the key in the dialog with display, or twice in the one without; encrypts; erases.
void UseKey(const MaskedLetters& secret, bool withDisplay) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a.odg", "content");
    std::filesystem::copy_file(PROGRAM_TEXTS, folder / "zr5e.dat");
    ScriptedUser user;
    MachineParts machine;
    Program program(machine.For(user, folder / "zr5e", folder / "config"));
    const auto press = [&](const char* name) { Press(program.Window(), name); };
    const auto type = [&](const QWidget& dialog, const char* name) {
        for (std::size_t i = 0; i < secret.size(); ++i)
            QTest::keyClick(&Control(dialog, name), secret[i]);
        for (const auto key : {Qt::Key_Home, Qt::Key_Space, Qt::Key_Backspace}) // corrected
            QTest::keyClick(&Control(dialog, name), key);
    };
    if (machine.engine->allocate_buffers() == 0) throw std::runtime_error("no buffers");
    program.Window().show();
    user.ExpectFile("Select file to be encrypted", path);
    press("cmdSingleFile(0)");
    press("cmdKeyFrom");
    WhenDialogOpens(program.Window(),
                    withDisplay ? "frmKeyboardWithDisplay" : "frmKeyboardWithoutDisplay",
                    [&](QWidget& dialog) {
                        type(dialog, withDisplay ? "txbKey" : "txbKey(0)");
                        if (!withDisplay) type(dialog, "txbKey(1)");
                        QTest::qWait(50); // painted
                        if (Unlocked(FindInOwnMemory(secret)).empty())
                            throw std::runtime_error("a shown key is not found");
                        Press(dialog, withDisplay ? "cmdYes" : "cmdOK");
                    });
    if (!withDisplay) {
        user.Expect("Key specified", "Inspect the key?", Answer::Yes);
        WhenDialogOpens(*qApp, "frmInspectKey", [](QWidget& dialog) {
            QTest::qWait(50);
            for (const char* view : {"optDecimal", "optHexadecimal", "optASCII"})
                Press(dialog, view);
            Press(dialog, "cmdYes");
        });
    }
    press(withDisplay ? "cmdKeyboardWithDisplay" : "cmdKeyboardWithoutDisplay");
    ExpectNone("by the dialogs", Unlocked(FindInOwnMemory(secret)));
    WhenDialogOpens(program.Window(), "frmConfirmOperation",
                    [](QWidget& dialog) { Press(dialog, "cmdYes"); });
    press("cmdDoIt");
    if (folder.Read("a.odg") == "content") throw std::runtime_error("not encrypted");
    if (FindInOwnMemory(secret).empty()) throw std::runtime_error("a held key is not found");
    press("cmdKeyFrom");
    user.Expect("Erase key", "Done");
    press("cmdEraseKey");
    QApplication::processEvents();
    ExpectNone("after erasing", FindInOwnMemory(secret));
}

/// Runs the whole in a process of its own, which gives no memory back, and returns its exit code.
int InChild(bool withDisplay) {
    const pid_t child = fork();
    if (child == 0) {
        int code = 0;
        try {
            KeepFreedMemory();
            UseKey(NewSecret(), withDisplay);
        } catch (const std::exception& failure) {
            std::cerr << failure.what() << '\n';
            code = 1;
        }
        _exit(testing::Test::HasFailure() ? 1 : code);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

TEST(KeyMemory, HoldsNothingOfAKeyThatWasErased) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "The sanitizer brings a heap of its own.";
#endif
    if (QApplication::platformName() != "offscreen")
        GTEST_SKIP() << "Two processes cannot share one connection to a display.";
    EXPECT_EQ(InChild(true), 0) << "typed with display";
    EXPECT_EQ(InChild(false), 0) << "typed without display and inspected";
}

} // namespace
} // namespace zr5::test
