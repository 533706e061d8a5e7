// From the start of a process to its main window on the (offscreen) display, in rounds. Usage:
// [ROUNDS]; called with "window" it is that process.

#include "app/program.h"
#include "app/system_machine.h"
#include "figures.h"
#include "util/user_port.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <QApplication>
#include <QWidget>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace zr5;

/// Nobody is there to answer the greeting.
class Absent final : public UserPort {
  public:
    Answer Ask(const MessageBox& box) override { return AnswerThatChangesNothing(box.buttons); }
    std::optional<std::string> PickFile(const FilePicker&) override { return std::nullopt; }
    std::optional<std::string> PickFolder(const FolderPicker&) override { return std::nullopt; }
    void ProcessEvents() override { QApplication::processEvents(); }
    void CopyToClipboard(const std::string&) override {}
    std::int32_t OpenAddress(const std::string&) override { return 0; }
};

int ShowWindow(int argc, char** argv) {
    QApplication application(argc, argv);
    const std::filesystem::path config =
        std::filesystem::temp_directory_path() / ("zr5-start-" + std::to_string(getpid()));
    Absent user;
    SystemMachine machine;
    Program program(machine.For(
        user, std::filesystem::canonical("/proc/self/exe").parent_path() / "zr5e", config));
    const bool started = program.Start();
    QApplication::processEvents(); // and so painted
    std::filesystem::remove_all(config);
    return started && program.Window().isVisible() ? 0 : 1;
}

double SecondsOfAStart(const char* self) {
    const auto begin = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        execl(self, self, "window", nullptr);
        _exit(127);
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child || status != 0) std::exit(1);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc > 1 && std::strcmp(argv[1], "window") == 0) return ShowWindow(argc, argv);
    const long rounds = argc > 1 ? std::atol(argv[1]) : 7;
    std::vector<double> seconds;
    for (long i = 0; i < rounds; ++i) {
        seconds.push_back(SecondsOfAStart("/proc/self/exe"));
    }
    const double median = zr5::bench::Median(seconds);
    std::printf("start to shown and painted main window, and end: %.3f s (median of %ld)\n", median,
                rounds);
    zr5::bench::PrintFigure("start to shown main window, s", "at most 0.5", median, median <= 0.5);
}
