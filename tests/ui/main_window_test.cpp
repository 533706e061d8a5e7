#include "ui/main_window.h"

#include "operation/operation_fixture.h"
#include "setup/field_rules.h"
#include "support/window_driver.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace zr5::test {
namespace {

class MainWindowTest : public OperationTest {
  protected:
    MainWindowTest() {
        key = {};
        desk.ResetSetup();
        desk.FinishStartup();
        window.Refresh();
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    template <typename Widget = QWidget>
    Widget& The(const char* name) {
        return Control<Widget>(window, name);
    }
    void Click(const char* name) {
        auto& button = The<QAbstractButton>(name);
        QTest::mouseClick(&button, Qt::LeftButton, {}, {10, button.height() / 2});
    }
    std::string Caption(const char* name) {
        return The<QAbstractButton>(name).text().toStdString();
    }
    std::string Label(const char* name) { return The<QLabel>(name).text().toStdString(); }
    void Hover(const char* name) {
        QEnterEvent event({1, 1}, {1, 1}, {1, 1});
        QApplication::sendEvent(&The(name), &event);
    }
    std::string FocusName() {
        const QWidget* focus = window.focusWidget();
        return focus == nullptr ? "" : focus->objectName().toStdString();
    }

    std::vector<std::string> log; ///< what the window asked of the program around it
    bool mayQuit = true;
    SetupDesk desk{user, disk, [](ProgramText) { return "Same as input file"; }};
    SetupStore setups{machine, desk};
    Operations operations{desk, key, machine};
    RandomnessReport randomness{desk, machine};
    MainWindow window{{machine, desk, setups, key, operations, randomness,
                       [this] { log.push_back("manual"); },
                       [this](const std::string& caption) {
                           log.push_back(caption);
                           return mayQuit;
                       }}};
};

TEST_F(MainWindowTest, HasEveryControlAndCaptionOnASmallScreen) {
    for (const auto& [name, control] : desk.Refresh())
        EXPECT_NE(window.findChild<QWidget*>(QString::fromStdString(name)), nullptr) << name;
    for (const auto* button : window.findChildren<QAbstractButton*>())
        EXPECT_FALSE(button->text().isEmpty()) << button->objectName().toStdString();
    EXPECT_EQ(window.windowTitle(), "Vaultline ZR5");
    EXPECT_LE(window.minimumSizeHint().width(), 1024);
    EXPECT_LE(window.minimumSizeHint().height(), 700);
}

TEST_F(MainWindowTest, ShowsWhatTheClockFindsUnlessAnOperationRuns) {
    desk.SetOperationRunning(true);
    desk.SelectFunction(Direction::Decrypt);
    window.Refresh();
    EXPECT_EQ(Caption("cmdDoIt"), "Perform the encryption");
    desk.SetOperationRunning(false);
    EXPECT_FALSE(window.findChild<QTimer*>("Clock3")->isActive());
    window.StartClock();
    EXPECT_EQ(window.findChild<QTimer*>("Clock3")->interval(), 1000);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Caption("cmdDoIt") == "Perform the decryption"; }));
}

TEST_F(MainWindowTest, ActsOnTheLeftButtonAndOnKeysButNotJustAfterAFilePicker) {
    auto& button = The<QPushButton>("cmdHelp(0)");
    QTest::mousePress(&button, Qt::LeftButton);
    QTest::mouseRelease(&button, Qt::LeftButton, {}, QPoint(-40, -40));
    QTest::mouseClick(&button, Qt::RightButton);
    window.NoteDialogClosed();
    Click("cmdHelp(0)");
    EXPECT_TRUE(log.empty());
    EXPECT_TRUE(QTest::qWaitFor([this] { return !desk.DialogJustClosed(); }));
    EXPECT_FALSE(window.findChild<QTimer*>("Clock2")->isActive());
    Click("cmdHelp(0)");
    QTest::keyClick(&button, Qt::Key_Space);
    QTest::keyClick(&button, Qt::Key_Return);
    EXPECT_EQ(log, (std::vector<std::string>{"manual", "manual", "manual"}));
}

TEST_F(MainWindowTest, MovesTheFocusByHoveringButNotFromWhereSomebodyTypes) {
    Click("optFilesInAFolder");
    auto& box = The<QLineEdit>("txbMaxNumFiles");
    for (const bool typed : {false, true}) {
        box.setFocus();
        box.selectAll();
        if (typed) QTest::keyClicks(&box, "3");
        Hover("cmdSetup");
        EXPECT_EQ(FocusName(), typed ? "txbMaxNumFiles" : "cmdSetup");
    }
    Hover("cmdRandomnessReport");
    EXPECT_EQ(box.text(), "3") << "and no box was asked for";
    user.Expect(RefusedMaxNumFilesBox());
    Click("cmdDoIt"); // the user meant 3
    Hover("cmdHelp(0)");
    Hover("cmdRandomnessReport");
    EXPECT_EQ(FocusName(), "cmdHelp(0)") << "a disabled button takes no focus";
}

TEST_F(MainWindowTest, LetsTheControlActThatLeavesABoxWithABadValue) {
    user.onAsk = [](const MessageBox&) { return Answer::Ok; };
    for (const char* control : {"optDecrypt", "cmdHelp(0)"}) {
        Click("optFilesInAFolder");
        QApplication::processEvents();
        auto& box = The<QLineEdit>("txbFilePattern");
        box.setFocus();
        QTest::keyClicks(&box, "a<b");
        QTest::mousePress(&The(control), Qt::LeftButton, {}, {10, 10});
        QApplication::processEvents();
        EXPECT_TRUE(user.asked.empty()) << "before the release";
        QTest::mouseRelease(&The(control), Qt::LeftButton, {}, {10, 10});
        QApplication::processEvents();
        EXPECT_EQ(std::exchange(user.asked, {}).size(), 1U) << control;
        EXPECT_EQ(box.text(), "");
    }
    EXPECT_TRUE(The<QRadioButton>("optDecrypt").isChecked());
    EXPECT_EQ(log, std::vector<std::string>{"manual"});
}

TEST_F(MainWindowTest, ChecksABoxThatIsLeftByOtherWays) {
    Click("optFilesInAFolder");
    auto& box = The<QLineEdit>("txbFilePattern");
    box.setFocus();
    QTest::keyClicks(&box, "a<b");
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    window.Refresh();
    EXPECT_EQ(box.text(), "a<b") << "a half-typed value is kept";
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    user.Expect("Invalid file pattern", "a<b\r\nis not a valid file pattern");
    The("txbMaxNumFiles").setFocus();
    QApplication::processEvents();
    EXPECT_EQ(box.text(), "");
    auto& number = The<QLineEdit>("txbMaxNumFiles");
    number.setText("150 files");
    QTest::keyClick(&number, Qt::Key_Return);
    EXPECT_EQ(number.text(), "150");
    EXPECT_EQ(desk.Setup().MaxNumFiles, 150);
}

TEST_F(MainWindowTest, PutsKeyAndSetupFramesInThePlaceOfTheMenuAndADoubleClickPressesOneButton) {
    const QPoint place = The("fraMenu").mapTo(&window, QPoint());
    Click("cmdKeyFrom");
    QApplication::processEvents();
    EXPECT_TRUE(The("fraKey").isVisible());
    EXPECT_EQ(The("fraKey").mapTo(&window, QPoint()), place);
    EXPECT_EQ(FocusName(), "cmdKeyboardWithDisplay");
    WhenDialogOpens(window, "frmKeyboardWithDisplay", [](QWidget& dialog) {
        QTest::keyClicks(&Control(dialog, "txbKey"), "abcd efgh ijkl mnop");
        Press(dialog, "cmdYes");
    });
    auto& brought = The("cmdKeyboardWithDisplay");
    QTest::mouseDClick(&brought, Qt::LeftButton);
    QTest::mouseRelease(&brought, Qt::LeftButton);
    EXPECT_FALSE(key.IsHeld());
    Click("cmdKeyboardWithDisplay");
    EXPECT_EQ(Label("lblKeyFrom(1)"), "(keyboard entry)");
    Click("cmdSetup");
    EXPECT_TRUE(The("fraMenu").isHidden() && The("fraSetup").isVisible());
    Click("cmdSaveSetup");
    Click("cmdDontSaveSetup");
    EXPECT_TRUE(The("fraMenu").isVisible() && The("fraMain").isEnabled());
    Click("cmdSetup");
    Click("cmdClearSetup");
    EXPECT_FALSE(key.IsHeld());
    EXPECT_EQ(Label("lblKeyFrom(0)"), "Key not specified");
    EXPECT_TRUE(The("fraMenu").isVisible());
}

TEST_F(MainWindowTest, ReportsTheRandomnessInThePlaceOfTheMenu) {
    folder.Write("a.txt", "x");
    desk.SetInputFile(folder.Path(), "a.txt");
    window.Refresh();
    user.onEvents = [this] {
        EXPECT_TRUE(The("lblCheckingFile").isVisible() && The("lblRandomness").isHidden());
        EXPECT_EQ(FocusName(), "cmdNoRandomnessReport");
    };
    Click("cmdRandomnessReport");
    for (const char* hidden : {"fraMenu", "lblCheckingFile", "cmdRandomnessFile(0)"})
        EXPECT_TRUE(The(hidden).isHidden()) << hidden;
    EXPECT_EQ(Label("lblRandomnessFile"), "Input file: a.txt");
    EXPECT_EQ(Label("lblFilesize"), "Filesize = 1 bytes");
    EXPECT_EQ(Label("lblRandomness"), "Randomness = 0.500");
    WhenDialogOpens(window, "frmGraphic", [](QWidget& dialog) { dialog.close(); });
    Click("cmdDisplayGraphic");
    Click("cmdNoRandomnessReport");
    EXPECT_TRUE(The("fraRandomnessFiles").isHidden());
    EXPECT_EQ(FocusName(), "cmdRandomnessReport");

    desk.SelectOutputMode(OutputTarget::SeparateOutput);
    desk.SetOutputFile(folder.Path(), "b.txt");
    folder.Write("b.txt", "x");
    Click("cmdRandomnessReport");
    EXPECT_TRUE(The("lblRandomness").isHidden());
    user.onEvents = [this] { window.close(); };
    Click("cmdRandomnessFile(0)");
    EXPECT_EQ(log, (std::vector<std::string>{"Quit"})) << "after the measurement";
    EXPECT_FALSE(window.isVisible());
}

TEST_F(MainWindowTest, ClosesOnlyWhenTheProgramMayQuitAndThenWithItsHelpWindow) {
    mayQuit = false;
    Click("cmdQuit");
    EXPECT_TRUE(window.isVisible());
    mayQuit = true;
    Click("cmdHelp(1)");
    Press(The("frmHelp"), "cmdClose");
    EXPECT_FALSE(The("frmHelp").isVisible());
    Click("cmdHelp(1)");
    EXPECT_TRUE(The("frmHelp").isVisible());
    window.close();
    EXPECT_FALSE(window.isVisible());
    EXPECT_FALSE(The("frmHelp").isVisible());
    EXPECT_EQ(log, (std::vector<std::string>{"Quit", "Quit"}));
}

TEST_F(MainWindowTest, StopsARunningOperationFirstWhenItIsClosed) {
    operations.WhileOutOfUse([this](const StopAsked& stopped) {
        window.close();
        EXPECT_TRUE(stopped() && window.isVisible() && log.empty());
    });
    EXPECT_EQ(log, (std::vector<std::string>{"Quit"}));
    EXPECT_FALSE(window.isVisible());
}

} // namespace
} // namespace zr5::test
