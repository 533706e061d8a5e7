
#include "app/end_to_end_fixture.h"
#include "libs/system/process.h"

#include <csignal>
#include <fstream>
#include <map>
#include <poll.h>

namespace zr5::test {
namespace {

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

TEST_F(EndToEnd, StaysAliveDuringALargeFileAndFinishesItWhenStopped) {
    const std::string path = folder.Write("large.odg", std::string(std::size_t{300} << 20U, 'x'));
    TypeKey();
    ChooseInput("large.odg");
    int seen = 0;
    int seenDuringPurge = 0;
    user.onEvents = [&] {
        if (std::ifstream(path).get() != 'x') ++seenDuringPurge;
        QWidget* report = TopWindow("frmReport");
        const bool works = report != nullptr && Control(*report, "prgFile").isVisible();
        if (!works || ++seen != 2) return;
        Main().activateWindow();
        QApplication::processEvents();
        EXPECT_TRUE(QTest::qWaitFor([&] { return report->isActiveWindow(); })) << "not covered";
        Press(*report, "cmdStop");
        EXPECT_EQ(Control<QLabel>(*report, "lblPausedDone").text(), "Stopped");
    };
    EXPECT_TRUE(Reports("Number of files encrypted: 1\n"));
    EXPECT_GT(seen, 2) << "the engine must let the interface react while it works";
    EXPECT_GT(seenDuringPurge, 1) << "and so must the overwriting of the input";
    user.onEvents = nullptr;
}

TEST_F(EndToEnd, EndsWithinAFileWhenThatIsAskedFromOutside) {
    folder.Write("large.odg", "");
    std::filesystem::resize_file(folder / "large.odg", std::uintmax_t{400} << 20U);
    TypeKey();
    ChooseInput("large.odg");
    const EndRequests requests;
    pollfd asked{requests.Descriptor(), POLLIN, 0};
    int seen = 0;
    user.onEvents = [&] {
        QWidget* report = TopWindow("frmReport");
        const bool works = report != nullptr && Control(*report, "prgFile").isVisible();
        if (works && ++seen == 2) raise(SIGTERM);
        if (!program->HasEnded() && poll(&asked, 1, 0) == 1) program->EndFromOutside();
    };
    EXPECT_EQ(Perform().find("-> "), std::string::npos);
    user.onEvents = nullptr;
    EXPECT_FALSE(Main().isVisible());
    EXPECT_FALSE(program->Key().IsHeld());
    EXPECT_EQ(folder.Names(), std::set<std::string>{"large.odg"});
    EXPECT_EQ(std::ifstream(folder / "large.odg").get(), 0) << "untouched";
}

TEST_F(EndToEnd, TakesAFolderWithItsSubfoldersThereAndChecksItAndBack) {
    std::map<std::string, std::string> originals;
    for (const char* name : {"a.odg", "two\nlines.odg", "not \xFF utf-8.odg", ".hidden.odg",
                             "sub/b.odg", "sub/deep/c.odg", "sub/.Trash-1/d.odg", "e.odp"}) {
        std::filesystem::create_directories(std::filesystem::path(folder / name).parent_path());
        originals[name] = PatternBytes(90000, static_cast<unsigned>(originals.size()));
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
    leavesOut = true; // as where the first operation was stopped
    folder.Write("sub/empty.odg", "new");
    EXPECT_TRUE(Reports("Number of files encrypted: 1\nNumber of files left out: 6\n"));
    leavesOut = false;
    folder.Write("sub/empty.odg", "");
    Choose("optDecrypt");
    const std::string encrypted = folder.Read("a.odg");
    folder.Write("a.odg", std::string(encrypted).replace(1500, 1, 1, ~encrypted[1500]));
    const std::string checked = ReportAfter("cmdCheckFiles");
    for (const char* part : {"bytes   One block expansion error", "bytes   intact\n",
                             "Number of files intact: 5\nNumber of files damaged: 1\n"})
        EXPECT_NE(checked.find(part), std::string::npos) << part << checked;
    EXPECT_EQ(Label("lblOutcome"), "5 intact · 1 left alone · 1 not intact");
    QWidget& window = *TopWindow("frmReport");
    Press(window, "cmdNextProblem");
    auto& text = Control<QPlainTextEdit>(window, "txbText");
    EXPECT_TRUE(text.textCursor().selectedText().startsWith("         a.odg")) << "it is selected";
    EXPECT_NE(text.textCursor().blockFormat().background(), QBrush()) << "and tinted";
    folder.Write("a.odg", encrypted);
    TypeKey("another key of the user");
    EXPECT_NE(ReportAfter("cmdCheckFiles").find("with this key: 6\n"), std::string::npos);
    TypeKey();
    const std::string report = Perform();
    EXPECT_NE(report.find("\n***  Prohibited folder  ***\n"), std::string::npos);
    EXPECT_NE(report.find("Number of files decrypted: 6\n"), std::string::npos);
    for (const auto& [name, content] : originals)
        EXPECT_EQ(folder.Read(name), content) << name;
}

TEST_F(EndToEnd, OffersTheRandomnessOfListedFilesAndEndsThatWhenTheMainWindowIsClosed) {
    for (const char* name : {"a", "b"})
        folder.Write(name, PatternBytes(3000));
    ChooseFolder(folder.Path(), nullptr);
    Press(Main(), "cmdListFiles");
    QWidget* report = TopWindow("frmReport");
    ASSERT_NE(report, nullptr);
    const QWidget& offer = Control(*report, "cmdRandomnessOfFiles");
    EXPECT_TRUE(offer.isVisible());
    user.onEvents = [&] {
        EXPECT_FALSE(offer.isVisible() || Main().isEnabled());
        Main().close();
    };
    user.Expect(Question("Really quit?", "Quit"), Answer::Yes);
    Press(*report, "cmdRandomnessOfFiles");
    user.onEvents = nullptr;
    EXPECT_FALSE(Main().isVisible() || report->isVisible());
    EXPECT_TRUE(Control<QPlainTextEdit>(*report, "txbText").toPlainText().endsWith(": 0 of 2\n"));
}

TEST_F(EndToEnd, PerformsTheReliabilityTestAsOftenAsAsked) {
    std::filesystem::create_directory(folder / "zr5test");
    folder.Write("zr5test/a.tst", "content");
    TypeKey();
    ChooseFolder(folder / "zr5test", "*.tst");
    WhenDialogOpens(Main(), "frmReliabilityTest",
                    [](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_EQ(Perform(), "no report");
    WhenDialogOpens(Main(), "frmReliabilityTest", [](QWidget& dialog) {
        auto& box = Control<QLineEdit>(dialog, "txbNumTests");
        EXPECT_EQ(box.selectedText(), "1");
        QTest::keyClicks(&box, "2");
        QTest::keyClick(&box, Qt::Key_Return);
    });
    EXPECT_TRUE(Reports("Reliability test #2 of 2\n"));
    EXPECT_EQ(folder.Read("zr5test/a.tst"), "content");
}

} // namespace
} // namespace zr5::test
