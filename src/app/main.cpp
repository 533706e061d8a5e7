// The process: makes the machine's own parts and runs the program on them.

#include "app/program.h"
#include "app/system_machine.h"
#include "libs/system/process.h"
#include "ui/appearance.h"
#include "ui/qt_user_port.h"

#include <filesystem>
#include <QApplication>
#include <QFile>
#include <QSocketNotifier>
#include <QStandardPaths>

namespace {

std::string NativePath(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

} // namespace

int main(int argc, char** argv) {
    using namespace zr5;
    ForbidCoreDumps();
    SurviveFileSizeLimit();
    argc = argc > 0 ? 1 : 0; // the program takes no options, the toolkit's included
    QApplication application(argc, argv);
    QApplication::setDesktopFileName("com.velmora.zr5e");
    QApplication::setWindowIcon(ProgramIcon());
    std::error_code ignored;
    std::filesystem::current_path("/", ignored);

    QtUserPort user;
    SystemMachine machine;
    Program program(machine.For(
        user, NativePath(QCoreApplication::applicationFilePath()),
        NativePath(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))));
    const auto end = [&] {
        user.EndQuestions();
        program.EndFromOutside();
    };
    const EndRequests requests;
    QSocketNotifier asked(requests.Descriptor(), QSocketNotifier::Read);
    asked.setEnabled(requests.Descriptor() >= 0);
    QObject::connect(&asked, &QSocketNotifier::activated, [&] {
        asked.setEnabled(false);
        end();
    });
    QObject::connect(&application, &QGuiApplication::commitDataRequest, end); // of the session
    if (!program.Start()) return 1;
    return program.HasEnded() ? 0 : QApplication::exec();
}
