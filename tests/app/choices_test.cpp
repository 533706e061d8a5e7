// How files, keys and setups are chosen, and come back after the end of the program.

#include "app/end_to_end_fixture.h"

#include <QMouseEvent>
#include <QTimer>

namespace zr5::test {
namespace {

TEST_F(EndToEnd, CreatesARandomKeyfileAndDecryptsWithIt) {
    const auto labels = [this] { return Label("lblKeyFrom(0)") + " " + Label("lblKeyFrom(1)"); };
    folder.Write("a.odg", "content");
    ChooseInput("a.odg");
    user.ExpectFile("Specify new keyfile", folder / "key");
    user.Expect(folder / "key", "Inspect the key?", Answer::Yes);
    Press(Main(), "cmdKeyFrom");
    WhenDialogOpens(Main(), "frmRandomKey", [this](QWidget& window) {
        auto& clockOfWindow = Control<QTimer>(window, "Clock");
        QObject::connect(&clockOfWindow, &QTimer::timeout, &window, [&window, x = 0.0]() mutable {
            x += 7;
            QMouseEvent move(QEvent::MouseMove, {x, 40}, {x, 40}, Qt::NoButton, Qt::NoButton,
                             Qt::NoModifier);
            QApplication::sendEvent(&window, &move);
        });
        clockOfWindow.setInterval(0);
        user.Expect("Key selected", "Be sure to remember the name of the keyfile!");
        WhenDialogOpens(Main(), "frmInspectKey", [](QWidget& dialog) { Press(dialog, "cmdYes"); });
    });
    Press(Main(), "cmdKeyFile(1)");
    EXPECT_EQ(labels(), "Key specified (new random key in keyfile)");
    EXPECT_EQ(folder.Read("key").size(), 64U);
    static_cast<void>(Perform());
    EXPECT_NE(folder.Read("a.odg"), "content");

    Press(Main(), "cmdKeyFrom");
    user.Expect("Erase key", "Done");
    Press(Main(), "cmdEraseKey");
    EXPECT_EQ(labels(), "Key not specified ");
    Choose("optDecrypt");
    Press(Main(), "cmdKeyFrom");
    EXPECT_FALSE(Control(Main(), "cmdKeyFile(1)").isVisible());
    user.ExpectFile("Get decryption key from keyfile", folder / "key");
    user.Expect(folder / "key", "Inspect the key?", Answer::No);
    Press(Main(), "cmdKeyFile(0)");
    EXPECT_EQ(labels(), "Key specified (apparently random key in keyfile)");
    static_cast<void>(Perform());
    EXPECT_EQ(folder.Read("a.odg"), "content");
}

TEST_F(EndToEnd, TakesUpItsSetupAgainAndWritesNothingOfTheKey) {
    const std::string key = PatternBytes(64, 7);
    folder.Write("KeyOfAnna", key);
    folder.Write("a.odg", "content");
    ChooseInput("a.odg");
    user.ExpectFile("Get encryption key from keyfile", folder / "KeyOfAnna");
    user.Expect(folder / "KeyOfAnna", "Inspect the key?", Answer::No);
    Press(Main(), "cmdKeyFrom");
    Press(Main(), "cmdKeyFile(0)");
    EXPECT_TRUE(Reports("Number of files encrypted: 1\n"));
    Choose("optDecrypt");
    for (const char* button : {"cmdSaveSetupForNextRun", "cmdSaveSetupAsOperationFile"}) {
        Press(Main(), "cmdSetup");
        Press(Main(), "cmdSaveSetup");
        if (std::string_view(button).ends_with("File"))
            user.ExpectFile("Specify operation file to be saved", folder / "anna");
        Press(Main(), button);
        EXPECT_TRUE(Control(Main(), "fraMain").isEnabled());
    }
    EXPECT_EQ(Label("lblFiles(2)"), folder / "anna.opn");
    const std::string checksum = std::to_string(program->Key().checksum);
    program.reset();

    std::size_t searched = 0;
    folder.Remove("KeyOfAnna");
    std::vector<std::string> secrets{"KeyOfAnna", checksum};
    for (std::size_t at = 0; at + 8 <= key.size(); ++at)
        secrets.push_back(key.substr(at, 8));
    for (const TemporaryFolder* each : {&home, &folder}) {
        for (const auto& [name, content] : each->Contents()) {
            if (content.empty() || name.ends_with(".dat")) continue; // empty: a folder
            ++searched;
            for (const std::string& secret : secrets)
                EXPECT_EQ(content.find(secret), std::string::npos) << name;
        }
    }
    EXPECT_EQ(searched, 3U) << "the encrypted file and both setups";

    MakeProgram();
    EXPECT_TRUE(program->Start()) << "without the startup message";
    EXPECT_EQ(Label("lblFiles(0)"), "a.odg");
    EXPECT_EQ(Label("lblFiles(1)"), "Same as input file");
    EXPECT_TRUE(Control<QRadioButton>(Main(), "optDecrypt").isChecked());
    Choose("optEncrypt");
    Press(Main(), "cmdSetup");
    user.ExpectFile("Specify operation file to be loaded", folder / "anna.opn");
    Press(Main(), "cmdLoadSetup");
    EXPECT_TRUE(Control<QRadioButton>(Main(), "optDecrypt").isChecked());
    EXPECT_TRUE(Control(Main(), "lblSetupFilename").isVisible());
}

TEST_F(EndToEnd, SpecifiesFilesByTheirExtension) {
    folder.Write("a.odg", "content");
    const auto specify = [this](const char* button, const char* window, const char* option) {
        WhenDialogOpens(Main(), window, [option](QWidget& dialog) {
            auto& box = Control<QLineEdit>(dialog, "txbExtension");
            Press(dialog, option);
            QApplication::processEvents();
            EXPECT_EQ(dialog.focusWidget(), &box);
            box.setText(QStringLiteral(".o"));
            QTest::keyClick(&box, Qt::Key_Return);
        });
        Press(Main(), button);
    };
    Choose("optWriteToSeparateOutputFiles");
    ChooseInput("a.odg");
    EXPECT_FALSE(Control(Main(), "cmdSpecifyFiles(0)").isEnabled());
    specify("cmdSpecifyFiles(1)", "frmSpecifyOutputFiles", "optSameName");
    EXPECT_EQ(Label("lblFiles(1)"), "a.o");
    ChooseFolder(folder.Path(), nullptr);
    EXPECT_FALSE(Control(Main(), "cmdSpecifyFiles(1)").isEnabled());
    specify("cmdSpecifyFiles(0)", "frmSpecifyInputFiles", "optSuchFiles");
    EXPECT_EQ(Label("lblFiles(0)"), "All files matching *.o");
}

} // namespace
} // namespace zr5::test
