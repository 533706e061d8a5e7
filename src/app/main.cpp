// Makes every part of the program and joins them.

#include "app/next_run_setup.h"
#include "app/program_links.h"
#include "app/startup.h"
#include "files/single_file_choice.h"
#include "libs/clock.h"
#include "libs/random.h"
#include "libs/secret.h"
#include "libs/zr5_engine.h"
#include "libs/zr5_file_kit.h"
#include "setup/setup_desk.h"
#include "ui/key_dialog_with_display.h"
#include "ui/key_dialog_without_display.h"
#include "ui/main_window.h"
#include "ui/operation_desk.h"
#include "ui/qt_user_port.h"
#include "util/program_text.h"

#include <filesystem>
#include <QApplication>
#include <QFile>
#include <QStandardPaths>

namespace {

std::string NativePath(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

std::string ConfigFolder() {
    return NativePath(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
}

} // namespace

int main(int argc, char** argv) {
    using namespace zr5;
    ForbidCoreDumps();
    argc = argc > 0 ? 1 : 0; // the program takes no options, the toolkit's included
    QApplication application(argc, argv);
    
    QApplication::setDesktopFileName("com.velmora.zr5e");
    std::error_code ignored;
    std::filesystem::current_path("/", ignored);

    const std::string executablePath = NativePath(QCoreApplication::applicationFilePath());
    QtUserPort user;
    SystemClock clock;
    SystemRandom random;
    const auto fileSystem = MakeSystemFileSystem();
    const auto engine = MakeCipherEngine(*fileSystem, clock, random);
    const auto fileKit = MakeFileKit(*fileSystem, random);
    LoadTextsBesideExecutable(user, *fileKit, executablePath);

    CurrentKey key;
    SetupDesk desk(user, *fileSystem,
                   [&](std::int16_t number) { return GetProgramText(*fileKit, number); });
    SingleFileChoice singleFile(user, *fileSystem, desk);
    const ProgramParts program{user, *fileSystem, *engine, *fileKit, key, desk};
    const std::string nextRunSetupPath = NextRunSetupPath(*fileSystem, ConfigFolder());
    ProgramLinks links(program, executablePath, nextRunSetupPath);
    Machine machine{*fileSystem, *engine, *fileKit, user, clock, executablePath};
    OperationDesk operations(desk, key, machine);

    MainWindow window({user, desk, singleFile, key, *engine, operations, links,
                       [&](QWidget& parent) {
                           GetKeyFromKeyboardWithDisplay(&parent, desk.Setup().Operation, key);
                       },
                       [&](QWidget& parent) {
                           GetKeyFromKeyboardWithoutDisplay(&parent, user, desk.Setup().Operation,
                                                            key);
                       }});
    operations.SetMainWindow(&window, [&] { window.OperationEnded(); });
    const WindowSteps steps{[&] { window.FitToScreen(); }, [&] { window.StartClock(); },
                            [&] {
                                window.Refresh();
                                window.RefreshKeyLabels();
                                window.show();
                            }};
    if (!StartProgram(program, steps, nextRunSetupPath)) return 1;
    return QApplication::exec();
}
