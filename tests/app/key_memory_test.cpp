// What is left of a key in the memory of the process after it was typed, used and erased. See
// docs/key-memory.md for what is done and what cannot be.

#include "app/program.h"
#include "app/system_machine.h"
#include "support/listening_desktop.h"
#include "support/scripted_user.h"
#include "support/temporary_folder.h"
#include "support/window_driver.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <QLineEdit>
#include <span>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {
/// What is given back to the heap stays as it is, so that a search finds every secret that was
/// given back without being wiped, whatever the heap would have put over it by chance.
bool keepsFreedMemory = false;
} // namespace

// The sanitizer brings a heap of its own, and the test is skipped there.
#ifndef __SANITIZE_ADDRESS__
#include <malloc.h>

// The C library's own two, under the names by which a program that replaces them reaches them.
extern "C" void __libc_free(void* memory) noexcept;                       // NOLINT(bugprone-*)
extern "C" void* __libc_realloc(void* memory, std::size_t size) noexcept; // NOLINT(bugprone-*)

extern "C" void free(void* memory) noexcept {
    if (!keepsFreedMemory) __libc_free(memory);
}

extern "C" void* realloc(void* memory, std::size_t size) noexcept {
    if (!keepsFreedMemory || memory == nullptr) return __libc_realloc(memory, size);
    void* moved = std::malloc(size);
    if (moved != nullptr) std::memcpy(moved, memory, std::min(size, malloc_usable_size(memory)));
    return moved;
}
#endif

namespace zr5::test {
namespace {

/// A secret that does not itself lie in memory in the form that is searched for.
class MaskedLetters {
  public:
    void Add(char letter) { masked_.push_back(static_cast<char>(letter ^ Mask)); }
    [[nodiscard]] std::size_t size() const { return masked_.size(); }
    [[nodiscard]] char operator[](std::size_t i) const {
        return static_cast<char>(masked_[i] ^ Mask);
    }

  private:
    static constexpr char Mask = '\x7F';
    std::vector<char> masked_;
};

constexpr std::size_t LettersInARow = 8;
constexpr std::size_t WidestLetter = 4;

void Search(std::span<const unsigned char> bytes, const MaskedLetters& secret,
            const std::string& mapping, std::vector<std::string>& found) {
    const auto matches = [&](std::size_t at, std::size_t width, std::size_t from) {
        for (std::size_t i = 0; i < LettersInARow; ++i) {
            const std::span<const unsigned char> letter = bytes.subspan(at + i * width, width);
            if ((letter[0] | 0x20) != (secret[from + i] | 0x20)) return false;
            for (const unsigned char high : letter.subspan(1))
                if (high != 0) return false;
        }
        return true;
    };
    for (std::size_t at = 0; at + LettersInARow <= bytes.size(); ++at) {
        for (std::size_t from = 0; from + LettersInARow <= secret.size(); ++from) {
            if ((bytes[at] | 0x20) != (secret[from] | 0x20)) continue;
            for (const std::size_t width : {std::size_t{1}, std::size_t{2}, WidestLetter}) {
                if (at + LettersInARow * width <= bytes.size() && matches(at, width, from))
                    found.push_back(mapping + " width " + std::to_string(width) + " letter " +
                                    std::to_string(from));
            }
        }
    }
}

/// Where in the writable memory of this process eight or more letters of `secret` stand in a
/// row, small or capital, in characters of one, two or four bytes: the name of each mapping and
/// the width, once for each place.
std::vector<std::string> FindInOwnMemory(const MaskedLetters& secret) {
    constexpr std::size_t PieceBytes = std::size_t{1} << 20U;
    std::vector<std::string> found;
    // What is read of memory lies in a mapping of its own, which is not searched; it goes with the
    // process.
    static auto* const piece = static_cast<unsigned char*>(
        mmap(nullptr, PieceBytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    const int memory = open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
    std::ifstream maps("/proc/self/maps");
    if (piece == MAP_FAILED || memory < 0 || !maps)
        throw std::runtime_error("own memory cannot be read");
    for (std::string line; std::getline(maps, line);) {
        std::uintptr_t begin = 0;
        std::uintptr_t end = 0;
        char mode[5] = {};
        if (std::sscanf(line.c_str(), "%lx-%lx %4s", &begin, &end, mode) != 3) continue;
        if (mode[1] != 'w' || begin == reinterpret_cast<std::uintptr_t>(piece)) continue;
        for (std::uintptr_t at = begin; at < end; at += PieceBytes - LettersInARow * WidestLetter) {
            const ssize_t got = pread(memory, piece, std::min<std::size_t>(PieceBytes, end - at),
                                      static_cast<off_t>(at));
            if (got <= 0) break; // a guard page or a device
            Search({piece, static_cast<std::size_t>(got)}, secret, line, found);
            if (static_cast<std::size_t>(got) < PieceBytes) break;
        }
    }
    close(memory);
    return found;
}

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
    SystemMachine machine;
    Program program(machine.For(user, folder / "zr5e", folder / "config"));
    const auto press = [&](const char* name) { Press(program.Window(), name); };
    const auto type = [&](const QWidget& dialog, const char* name) {
        for (std::size_t i = 0; i < secret.size(); ++i)
            QTest::keyClick(&Control(dialog, name), secret[i]);
        for (const auto key : {Qt::Key_Home, Qt::Key_Space, Qt::Key_Backspace}) // corrected
            QTest::keyClick(&Control(dialog, name), key);
    };
    if (!machine.engine->allocate_buffers()) throw std::runtime_error("no buffers");
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
            keepsFreedMemory = true;
            // What carries events to a screen reader makes copies.
            ListenToEvents([](QAccessibleEvent* event) {
                const QString told = ToldBy(*event);
                const QByteArray copy = told.toUtf8();
            });
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
