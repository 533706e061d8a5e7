// Drives the program's own windows through one encryption, a check and a decryption, as a user
// would, and leaves screenshots and the report in the folder that is its argument.

#include "report_states.h"

#include "app/program.h"
#include "app/system_machine.h"
#include "support/window_driver.h"
#include "ui/qt_user_port.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <QApplication>
#include <QPlainTextEdit>
#include <QRadioButton>

namespace {

using namespace zr5;
using namespace zr5::test;

constexpr const char* TourKey = "correct horse battery staple";
constexpr const char* SampleName = "Letter to Anna.txt";
constexpr const char* SampleText =
    "Dear Anna,\n\nthe key is where we said. Burn this letter.\n\nYours\n";

/// The user of the tour: real boxes, but the file picker always finds the sample.
class TourUser final : public UserPort {
  public:
    std::string sample;

    Answer Ask(const MessageBox& box) override { return real_.Ask(box); }
    std::optional<std::string> PickFile(const FilePicker& /*picker*/) override { return sample; }
    std::optional<std::string> PickFolder(const FolderPicker& /*picker*/) override { return {}; }
    void ProcessEvents() override { real_.ProcessEvents(); }
    void WaitForEvents() override { real_.WaitForEvents(); }
    void CopyToClipboard(const std::string& text) override { real_.CopyToClipboard(text); }
    std::int32_t OpenAddress(const std::string& /*address*/) override { return 42; }

  private:
    QtUserPort real_;
};

class Tour {
  public:
    Tour(Program& program, TourUser& user, std::filesystem::path folder)
        : program_(program), user_(user), folder_(std::move(folder)) {}

    /// Whether the sample came back unchanged.
    bool Run() {
        WriteSample();
        WhenDialogOpens(program_.Window(), "", [this](QWidget& box) {
            Picture(box, "startup");
            QTest::keyClick(&box, Qt::Key_Return);
        });
        if (!program_.Start()) return false;
        Picture(program_.Window(), "main-window");
        Press(program_.Window(), "cmdSingleFile(0)");
        TypeKey();
        Picture(program_.Window(), "ready-to-encrypt");
        Perform("encryption");
        if (Content() == SampleText) return false;
        Control<QRadioButton>(program_.Window(), "optDecrypt").click();
        Picture(program_.Window(), "ready-to-decrypt");
        Press(program_.Window(), "cmdCheckFiles");
        KeepReport("check");
        Perform("decryption");
        return Content() == SampleText;
    }

  private:
    void WriteSample() {
        user_.sample = (folder_ / SampleName).string();
        std::ofstream(user_.sample, std::ios::binary) << SampleText;
    }
    std::string Content() {
        std::ifstream file(user_.sample, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    void Picture(QWidget& window, const std::string& name) {
        QCoreApplication::processEvents();
        const std::string file = std::to_string(++pictures_) + "-" + name + ".png";
        window.grab().save(QString::fromStdString((folder_ / file).string()));
    }
    void TypeKey() {
        QWidget& window = program_.Window();
        Press(window, "cmdKeyFrom");
        Picture(window, "key-frame");
        WhenDialogOpens(window, "frmKeyboardWithDisplay", [this](QWidget& dialog) {
            QTest::keyClicks(&Control(dialog, "txbKey"), TourKey);
            Picture(dialog, "key");
            Press(dialog, "cmdYes");
        });
        Press(window, "cmdKeyboardWithDisplay");
    }

    void Perform(const std::string& what) {
        QWidget& window = program_.Window();
        WhenDialogOpens(window, "frmConfirmOperation", [&](QWidget& dialog) {
            if (what == "encryption") {
                WhenDialogOpens(window, "frmPurgeWarning", [this](QWidget& warning) {
                    Picture(warning, "purge-warning");
                    Press(warning, "cmdOK");
                });
            }
            Picture(dialog, "confirm-" + what);
            Press(dialog, "cmdYes");
        });
        Press(window, "cmdDoIt");
        KeepReport(what);
    }
    void KeepReport(const std::string& what) {
        QWidget* report = TopWindow("frmReport");
        Picture(*report, "report-of-" + what);
        std::ofstream(folder_ / ("report-of-" + what + ".txt"))
            << Control<QPlainTextEdit>(*report, "txbText").toPlainText().toStdString() << '\n';
        report->close();
    }

    Program& program_;
    TourUser& user_;
    std::filesystem::path folder_;
    int pictures_ = 0;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 2) {
        std::cerr << "usage: zr5e-tour FOLDER\n";
        return 2;
    }
    const std::filesystem::path folder = std::filesystem::absolute(argv[1]);
    const std::filesystem::path executable = QCoreApplication::applicationFilePath().toStdString();

    TourUser user;
    SystemMachine machine;
    const std::filesystem::path configFolder = folder / "config";
    std::filesystem::create_directories(configFolder);
    Program program(machine.For(user, executable.parent_path() / "zr5e", configFolder));
    const bool cameBack = Tour(program, user, folder).Run();
    DrawReportStates(folder);
    std::cout << (cameBack ? "The file came back unchanged.\n" : "The tour failed.\n");
    return cameBack ? 0 : 1;
}
