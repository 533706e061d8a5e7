// The whole program on real files, driven through its own windows by the names of the controls.

#include "app/program.h"
#include "libs/random.h"
#include "libs/zr5_engine.h"
#include "libs/zr5_file_kit.h"
#include "support/scripted_user.h"
#include "support/temporary_folder.h"
#include "support/window_driver.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <sys/stat.h>

namespace zr5::test {
namespace {

/// The script of boxes, and a toolkit that goes on working meanwhile.
class LivingUser : public ScriptedUser {
  public:
    void ProcessEvents() override {
        QCoreApplication::processEvents();
        ScriptedUser::ProcessEvents();
    }
};

class EndToEnd : public testing::Test {
  protected:
    static constexpr const char* Key = "abcd efgh ijkl mnop";

    EndToEnd() {
        std::filesystem::copy_file(PROGRAM_TEXTS, home / "zr5e.dat");
        MakeProgram();
        user.onAsk = [](const MessageBox&) { return Answer::Ok; }; // how to begin
        EXPECT_TRUE(program->Start());
        user.onAsk = nullptr;
    }

    void MakeProgram() {
        program = std::make_unique<Program>(Program::Surroundings{
            user, *system, *engine, *kit, clock, random, home / "zr5e", home.Path() + "config"});
    }
    QWidget& Main() { return program->Window(); }
    void Choose(const char* option) { Control<QRadioButton>(Main(), option).click(); }
    void ChooseInput(const std::string& name, bool decrypts = false) {
        user.ExpectFile(decrypts ? "Select file to be decrypted" : "Select file to be encrypted",
                        folder / name);
        Press(Main(), "cmdSingleFile(0)");
    }
    /// For a result of decryption.
    void ChooseOutput(const std::string& name) {
        user.ExpectFile("Specify output file for the decrypted file", folder / name);
        Press(Main(), "cmdSingleFile(1)");
    }
    void ChooseFolder(const std::string& path, const char* pattern) {
        Choose("optFilesInAFolder");
        user.ExpectFolder("Specify input folder", path);
        Press(Main(), "cmdSpecifyDirectory");
        if (pattern == nullptr) return;
        auto& box = Control<QLineEdit>(Main(), "txbFilePattern");
        box.setText(QString::fromLatin1(pattern));
        QTest::keyClick(&box, Qt::Key_Return);
    }
    std::string Label(const char* name) {
        return Control<QLabel>(Main(), name).text().toStdString();
    }
    void TypeKey(const char* key = Key) {
        Press(Main(), "cmdKeyFrom");
        WhenDialogOpens(Main(), "frmKeyboardWithDisplay", [key](QWidget& dialog) {
            auto& box = Control<QLineEdit>(dialog, "txbKey");
            box.clear();
            QTest::keyClicks(&box, QString::fromLatin1(key));
            Press(dialog, "cmdYes");
        });
        Press(Main(), "cmdKeyboardWithDisplay");
    }
    /// Performs what is set and returns the report.
    std::string Perform() {
        WhenDialogOpens(Main(), "frmConfirmOperation",
                        [](QWidget& dialog) { Press(dialog, "cmdYes"); });
        Press(Main(), "cmdDoIt");
        QWidget* report = TopWindow("frmReport");
        if (report == nullptr) return "no report";
        const QString text = Control<QPlainTextEdit>(*report, "txbText").toPlainText();
        Press(*report, "cmdClose");
        EXPECT_FALSE(report->isVisible());
        return text.toStdString();
    }

    /// Performs what is set and looks for a text in the report.
    bool Reports(std::string_view text) { return Perform().find(text) != std::string::npos; }

    TemporaryFolder home;
    TemporaryFolder folder;
    LivingUser user;
    SystemClock clock;
    SystemRandom random;
    std::unique_ptr<FileSystem> system = MakeSystemFileSystem();
    std::unique_ptr<CipherEngine> engine = MakeCipherEngine(*system, clock, random);
    std::unique_ptr<FileKit> kit = MakeFileKit(*system, random);
    std::unique_ptr<Program> program;
};

TEST_F(EndToEnd, GivesFilesOfEveryLengthBackInPlace) {
    TypeKey();
    for (const std::size_t length : {1U, 16U, 65'537U, 1'048'576U}) {
        const std::string original = PatternBytes(length);
        folder.Write("data.odg", original);
        Choose("optEncrypt");
        ChooseInput("data.odg");
        EXPECT_TRUE(Reports("Number of files encrypted: 1\n")) << length;
        EXPECT_NE(folder.Read("data.odg"), original) << length;
        Choose("optDecrypt");
        EXPECT_TRUE(Reports("Number of files decrypted: 1\n")) << length;
        EXPECT_EQ(folder.Read("data.odg"), original) << length;
        EXPECT_EQ(folder.Names(), std::set<std::string>{"data.odg"});
    }
}

TEST_F(EndToEnd, TakesEveryNameInPlaceAndToADifferentFile) {
    TypeKey();
    for (const std::string& name :
         {std::string("with blanks .odg"), std::string("it's \"quoted\""),
          std::string("two\nlines"), std::string("not \xFF\xC3 utf-8"), std::string(255, 'n')}) {
        folder.Empty();
        folder.Write(name, "content");
        Choose("optOverwriteInputFiles");
        Choose("optEncrypt");
        ChooseInput(name);
        EXPECT_TRUE(Reports("-> ")) << name;
        Choose("optWriteToSeparateOutputFiles");
        Choose("optDecrypt");
        ChooseInput(name, true);
        ChooseOutput("plain");
        EXPECT_TRUE(Reports("plain  7 bytes")) << name;
        EXPECT_EQ(folder.Read("plain"), "content");
        EXPECT_EQ(folder.Names(), (std::set<std::string>{name, "plain"}));
    }
}

TEST_F(EndToEnd, ReportsAWrongKeyAndLeavesBothFilesAsTheyWere) {
    TypeKey();
    folder.Write("a.odg", "content");
    ChooseInput("a.odg");
    static_cast<void>(Perform());
    const std::string sealed = folder.Read("a.odg");
    folder.Write("out", "kept");
    Choose("optDecrypt");
    Choose("optWriteToSeparateOutputFiles");
    ChooseInput("a.odg", true);
    ChooseOutput("out");
    TypeKey("another key of good length");
    EXPECT_TRUE(Reports("7 bytes   Invalid block size.\n"));
    EXPECT_EQ(folder.Read("a.odg"), sealed);
    EXPECT_EQ(folder.Read("out"), "kept");
}

TEST_F(EndToEnd, ReportsWhatVanishedOrChangedItsKindAfterItWasChosen) {
    TypeKey();
    folder.Write("a.odg", "content");
    ChooseInput("a.odg");
    folder.Remove("a.odg");
    EXPECT_TRUE(Reports("Input file not found.\n"));
    std::filesystem::create_directory(folder / "a.odg");
    EXPECT_TRUE(Reports("Unable to open input file.\n"));
    std::filesystem::remove(folder / "a.odg");
    ASSERT_EQ(mkfifo((folder / "a.odg").c_str(), 0600), 0);
    EXPECT_TRUE(Reports("Unable to open input file.\n"));
    EXPECT_EQ(folder.Names(), std::set<std::string>{"a.odg"});
}

TEST_F(EndToEnd, StaysAliveDuringALargeFileAndFinishesItWhenStopped) {
    const std::string path = folder / "large.odg";
    folder.Write("large.odg", "");
    std::filesystem::resize_file(path, std::uintmax_t{400} << 20U);
    TypeKey();
    ChooseInput("large.odg");
    int seen = 0;
    int seenDuringPurge = 0;
    user.onEvents = [&] {
        if (folder.Has("large.odg.zr5")) ++seenDuringPurge;
        QWidget* report = TopWindow("frmReport");
        const bool works = report != nullptr && Control(*report, "prgFile").isVisible();
        if (!works || ++seen != 2) return;
        Main().activateWindow();
        QApplication::processEvents();
        EXPECT_TRUE(QTest::qWaitFor([&] { return report->isActiveWindow(); })) << "not covered";
        Press(*report, "cmdStop");
        EXPECT_EQ(Control<QPushButton>(*report, "cmdStop").text(), "Stop");
        EXPECT_EQ(Control<QLabel>(*report, "lblPausedDone").text(), "Stopped");
    };
    EXPECT_TRUE(Reports("Number of files encrypted: 1\n"));
    EXPECT_GT(seen, 2) << "the engine must let the interface react while it works";
    EXPECT_GT(seenDuringPurge, 2) << "and so must the overwriting of the input";
    user.onEvents = nullptr;
}

TEST_F(EndToEnd, TakesAFolderWithItsSubfoldersThereAndBack) {
    std::map<std::string, std::string> originals;
    for (const char* name : {"a.odg", "two\nlines.odg", "not \xFF utf-8.odg", ".hidden.odg",
                             "sub/b.odg", "sub/deep/c.odg", "sub/.Trash-1/d.odg", "e.odp"}) {
        std::filesystem::create_directories(std::filesystem::path(folder / name).parent_path());
        originals[name] = PatternBytes(3000, static_cast<unsigned>(originals.size()));
        folder.Write(name, originals[name]);
    }
    folder.Write("sub/empty.odg", "");
    std::filesystem::create_directory_symlink(folder.Path(), folder / "sub/loop");
    TypeKey();
    ChooseFolder(folder.Path(), "*.odg");
    Choose("optSubfolders");
    EXPECT_TRUE(Reports("Number of files encrypted: 6\n"));
    for (const auto& [name, content] : originals)
        EXPECT_EQ(folder.Read(name) == content, name == "sub/.Trash-1/d.odg" || name == "e.odp");
    Choose("optDecrypt");
    const std::string report = Perform();
    EXPECT_NE(report.find("\n***  Prohibited folder  ***\n"), std::string::npos);
    EXPECT_NE(report.find("Number of files decrypted: 6\n"), std::string::npos);
    for (const auto& [name, content] : originals)
        EXPECT_EQ(folder.Read(name), content) << name;
}

TEST_F(EndToEnd, PerformsTheReliabilityTestAsOftenAsAsked) {
    std::filesystem::create_directory(folder / "zr5test");
    folder.Write("zr5test/a.tst", "content");
    TypeKey();
    ChooseFolder(folder / "zr5test", "*.tst");
    const auto& label = Control(Main(), "lblPerformingReliabilityTest");
    bool wasAnnounced = false;
    user.onEvents = [&] { wasAnnounced = wasAnnounced || label.isVisible(); };
    WhenDialogOpens(Main(), "frmReliabilityTest", [](QWidget& dialog) {
        EXPECT_EQ(Control<QLineEdit>(dialog, "txbNumTests").text(), "1");
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(Perform(), "no report");
    EXPECT_FALSE(wasAnnounced);
    WhenDialogOpens(Main(), "frmReliabilityTest", [this](QWidget& dialog) {
        auto& box = Control<QLineEdit>(dialog, "txbNumTests");
        QTest::keyClicks(&box, "many");
        user.Expect("Number of performances",
                    "The number of performances must be a whole number between 1 and 100.");
        QTest::keyClick(&box, Qt::Key_Return);
        EXPECT_EQ(box.selectedText(), "many");
        QTest::keyClicks(&box, "2");
        QTest::keyClick(&box, Qt::Key_Return);
    });
    EXPECT_TRUE(Reports("Reliability test #2 of 2\n"));
    EXPECT_TRUE(wasAnnounced && !label.isVisible());
    EXPECT_EQ(folder.Read("zr5test/a.tst"), "content");
    user.onEvents = nullptr;
}

TEST_F(EndToEnd, AsksForWhatIsMissingInItsOrder) {
    user.Expect("Input file", "Please specify input file.");
    Press(Main(), "cmdDoIt");
    folder.Write("a.odg", "content");
    ChooseInput("a.odg");
    user.Expect("Encryption key not specified", "Please specify the encryption key.");
    Press(Main(), "cmdDoIt");
    TypeKey();
    Choose("optWriteToSeparateOutputFiles");
    ChooseInput("a.odg");
    user.Expect("Output file", "Output file not specified.");
    Press(Main(), "cmdDoIt");
    EXPECT_EQ(folder.Read("a.odg"), "content");
}

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
    Press(Main(), "cmdKeyFrom");
    user.ExpectFile("Get decryption key from keyfile", std::nullopt);
    Press(Main(), "cmdKeyFile(0)");
    EXPECT_EQ(labels(), "Key specified (apparently random key in keyfile)") << "as before";
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
    for (const std::string& root : {home.Path(), folder.Path()}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
            if (!entry.is_regular_file() || entry.path().extension() == ".dat") continue;
            ++searched;
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string content(std::istreambuf_iterator<char>(file), {});
            for (const std::string& secret : {std::string("KeyOfAnna"), checksum})
                EXPECT_EQ(content.find(secret), std::string::npos) << entry.path() << secret;
            for (std::size_t at = 0; at + 8 <= key.size(); ++at)
                EXPECT_EQ(content.find(key.substr(at, 8)), std::string::npos) << entry.path();
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
    Press(Main(), "cmdHelp(1)");
    EXPECT_EQ(TopWindow("frmHelp"), nullptr) << "deaf to the picker's double-click";
}

TEST_F(EndToEnd, SpecifiesFilesByTheirExtension) {
    folder.Write("a.odg", "content");
    const auto specify = [this](const char* button, const char* window, const char* option) {
        WhenDialogOpens(Main(), window, [option](QWidget& dialog) {
            auto& box = Control<QLineEdit>(dialog, "txbExtension");
            auto& choice = Control<QRadioButton>(dialog, option);
            QTest::mouseClick(&choice, Qt::LeftButton, {}, QPoint(8, choice.height() / 2));
            EXPECT_TRUE(choice.font().bold());
            QApplication::processEvents();
            EXPECT_EQ(dialog.focusWidget(), &box);
            box.setText(QStringLiteral("*.odg.1"));
            Press(dialog, "cmdAccept");
            EXPECT_TRUE(dialog.isVisible());
            EXPECT_EQ(box.text(), "odg.1");
            box.setText(QStringLiteral(".o"));
            QTest::keyClick(&box, Qt::Key_Return);
        });
        user.Expect("Error", "Extension must not contain \".\"");
        Press(Main(), button);
    };
    Choose("optWriteToSeparateOutputFiles");
    EXPECT_FALSE(Control(Main(), "cmdSpecifyFiles(1)").isEnabled());
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
