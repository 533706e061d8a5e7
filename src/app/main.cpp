// The process: makes the machine's own parts and runs the program on them.

#include "app/program.h"
#include "libs/random.h"
#include "libs/secret.h"
#include "libs/zr5_engine.h"
#include "libs/zr5_file_kit.h"
#include "ui/appearance.h"
#include "ui/qt_user_port.h"

#include <filesystem>
#include <QApplication>
#include <QFile>
#include <QStandardPaths>

namespace {

std::string NativePath(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

} // namespace

int main(int argc, char** argv) {
    using namespace zr5;
    ForbidCoreDumps();
    argc = argc > 0 ? 1 : 0; // the program takes no options, the toolkit's included
    QApplication application(argc, argv);
    QApplication::setDesktopFileName("com.velmora.zr5e");
    QApplication::setWindowIcon(ProgramIcon());
    std::error_code ignored;
    std::filesystem::current_path("/", ignored);

    QtUserPort user;
    SystemClock clock;
    SystemRandom random;
    const auto fileSystem = MakeSystemFileSystem();
    const auto engine = MakeCipherEngine(*fileSystem, clock, random);
    const auto fileKit = MakeFileKit(*fileSystem, random);
    Program program(
        {user, *fileSystem, *engine, *fileKit, clock, random,
         NativePath(QCoreApplication::applicationFilePath()),
         NativePath(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))});
    return program.Start() ? QApplication::exec() : 1;
}
