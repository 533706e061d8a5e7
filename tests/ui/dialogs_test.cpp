#include "operation/operation_fixture.h"
#include "support/listening_desktop.h"
#include "support/window_driver.h"
#include "ui/confirm_window.h"
#include "ui/graphic_window.h"
#include "ui/inspect_key_window.h"
#include "ui/key_dialogs.h"
#include "ui/random_key_window.h"

#include <QAction>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPointingDevice>
#include <QTabletEvent>

// The windows beside the main one, each with the rules that it binds.

namespace zr5::test {
namespace {

const QString Typed = QStringLiteral("abcd efgh ijkl mnop");

bool IsShown(const QWidget& window, const char* name) {
    return Control(window, name).isVisibleTo(&window);
}
std::string TextOf(const QWidget& window, const char* name) {
    return Control<QLabel>(window, name).text().toStdString();
}

class WithDisplayWindow : public testing::Test {
  protected:
    void SetUp() override { window.show(); }
    void Type(const QString& text) { QTest::keyClicks(&box, text); }
    CurrentKey key;
    KeyboardWithDisplay rules{Direction::Encrypt, key};
    KeyDialogWithDisplay window{rules};
    QLineEdit& box = Control<QLineEdit>(window, "txbKey");
};

TEST_F(WithDisplayWindow, ShowsItsAnswersOnceTheKeyIsLongEnoughAndAnswersEnterByTheFocus) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    Type(Typed.chopped(1));
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_TRUE(window.isVisible());
    for (const bool shown : {false, true}) {
        if (shown) Type(QStringLiteral("p"));
        for (const auto* name : {"cmdYes", "cmdNo", "lblChecksumIs", "lblUseThisKey"})
            EXPECT_EQ(IsShown(window, name), shown) << name;
    }
    EXPECT_EQ(TextOf(window, "lblChecksumIs"), "Checksum is 6304");
    const auto answersBy = [this](QWidget& focus, Qt::Key pressed, KeyAnswer answer) {
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        focus.setFocus();
        QTest::keyClick(&focus, pressed);
        EXPECT_EQ(window.Answer(), answer);
        EXPECT_FALSE(window.isVisible());
    };
    answersBy(box, Qt::Key_Escape, KeyAnswer::Cancel);
    Type(Typed); // again: leaving has wiped the box
    answersBy(box, Qt::Key_Return, KeyAnswer::Yes);
    answersBy(Control(window, "cmdNo"), Qt::Key_Return, KeyAnswer::No);
}

TEST_F(WithDisplayWindow, RefusesAnEditWholeAndKeepsTheCursor) {
    Type(QStringLiteral("abcdef"));
    box.setCursorPosition(3);
    for (const bool refused : {true, false}) {
        box.insert(refused ? QStringLiteral("xΩ") : QStringLiteral("x"));
        EXPECT_EQ(box.text(), refused ? QStringLiteral("abcdef") : QStringLiteral("abcxdef"));
        EXPECT_EQ(box.cursorPosition(), refused ? 3 : 4);
        EXPECT_EQ(IsShown(window, "lblHint"), refused);
    }
}

TEST_F(WithDisplayWindow, ComposesWhatWasTypedInPiecesBeforeItIsCut) {
    box.insert(QString::fromUtf8("ae\u0301"));
    EXPECT_EQ(rules.Entry().Bytes().text(), "a\xE9");
    EXPECT_EQ(box.cursorPosition(), 2);
    box.clear();
    box.insert(QString::fromUtf8("e\u0301").repeated(70));
    EXPECT_EQ(rules.Entry().Bytes().text(), std::string(64, '\xE9'));
    box.setCursorPosition(3);
    box.insert(QStringLiteral("x"));
    EXPECT_EQ(rules.Entry().Bytes().text(), std::string(64, '\xE9')) << "no room left";
    EXPECT_FALSE(box.isUndoAvailable());
    box.selectAll();
    QGuiApplication::clipboard()->clear();
    QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString()) << "a key is never copied";
}

class WithoutDisplayWindow : public testing::Test {
  protected:
    void SetUp() override { window.show(); }
    ScriptedUser user;
    KeyboardWithoutDisplay rules{Direction::Encrypt};
    KeyDialogWithoutDisplay window{rules, user};
    QLineEdit& first = Control<QLineEdit>(window, "txbKey(0)");
    QLineEdit& second = Control<QLineEdit>(window, "txbKey(1)");
};

TEST_F(WithoutDisplayWindow, LeadsFromTheFirstMaskedEntryToTheSecondToOkAndBackAfterAMismatch) {
    for (const bool isLongEnough : {false, true}) {
        QTest::keyClicks(&first, isLongEnough ? QStringLiteral("p") : Typed.chopped(1));
        EXPECT_EQ(second.isEnabled(), isLongEnough);
        EXPECT_EQ(IsShown(window, "lblChecksumIs"), isLongEnough);
    }
    QTest::keyClick(&second, Qt::Key_Return);
    EXPECT_TRUE(window.isVisible() && !IsShown(window, "cmdOK"));
    QTest::keyClicks(&second, QStringLiteral("ABCDEFGHIJKLMNOPx"));
    EXPECT_EQ(first.displayText(), QString(Typed.size(), QLatin1Char('#')));
    EXPECT_EQ(second.displayText(), QString(17, QLatin1Char('#')));
    user.Expect("Error", "The key entries do not match!");
    Press(window, "cmdOK");
    EXPECT_TRUE(window.isVisible() && first.text().isEmpty() && !IsShown(window, "cmdOK"));
    EXPECT_EQ(window.focusWidget(), &second);
    first.insert(QStringLiteral("Ω"));
    EXPECT_TRUE(IsShown(window, "lblHint(0)") && !IsShown(window, "lblHint(1)"));
    QTest::keyClicks(&first, Typed);
    QTest::keyClick(&second, Qt::Key_Backspace);
    EXPECT_TRUE(IsShown(window, "cmdOK"));
    QTest::keyClick(&second, Qt::Key_Return);
    EXPECT_EQ(window.result(), QDialog::Accepted);
}

/// Hears what the toolkit hands on to assistive technology.
class KeyboardListener : public QObject {
  public:
    KeyboardListener() { qApp->installEventFilter(this); }
    QString heard;

  protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::KeyPress && event->spontaneous())
            heard += static_cast<QKeyEvent*>(event)->text();
        return false;
    }
};

TEST(KeyWindows, TellNoListenerWhichKeysArePressed) {
    const KeyboardListener listener;
    KeyboardWithDisplay rules{Direction::Encrypt, CurrentKey{}};
    KeyDialogWithDisplay window{rules};
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    for (const char letter : std::string("secret"))
        QTest::keyClick(window.windowHandle(), letter);
    EXPECT_EQ(Control<QLineEdit>(window, "txbKey").text(), "secret");
    EXPECT_EQ(listener.heard, QString());
    Control(window, "cmdCancel").setFocus();
    QTest::keyClick(window.windowHandle(), Qt::Key_X);
    EXPECT_FALSE(listener.heard.isEmpty());
}

TEST(KeyWindows, TellNoListenerWhatIsTyped) {
    static QString told;
    ListenToEvents([](QAccessibleEvent* event) { told += ToldBy(*event); });
    KeyboardWithDisplay shownRules{Direction::Encrypt, CurrentKey{}};
    const KeyDialogWithDisplay shown{shownRules};
    ScriptedUser user;
    KeyboardWithoutDisplay maskedRules{Direction::Encrypt};
    const KeyDialogWithoutDisplay masked{maskedRules, user};
    QLineEdit other;
    for (QLineEdit* box :
         {&Control<QLineEdit>(shown, "txbKey"), &Control<QLineEdit>(masked, "txbKey(0)"), &other}) {
        EXPECT_FALSE(told.contains(QLatin1Char('Z'))) << told.toStdString();
        QTest::keyClicks(box, QString(20, QLatin1Char('Z')));
        box->setText(QString(30, QLatin1Char('Z')));
    }
    EXPECT_TRUE(told.contains(QLatin1String("ZZ"))) << "what is no key is told";
    const auto* asked =
        QAccessible::queryAccessibleInterface(&Control<QLineEdit>(masked, "txbKey(0)"));
    for (const auto text : {QAccessible::Name, QAccessible::Description, QAccessible::Value})
        EXPECT_FALSE(asked->text(text).contains(QLatin1Char('Z')));
    QAccessible::installUpdateHandler(nullptr);
}

class SmallWindows : public OperationTest {};

TEST_F(SmallWindows, OfTheInspectionSwitchesViewsAndClosesByAnAnswerOnly) {
    InspectInWindow inspector(nullptr, machine);
    const SecretBytes buffer = SecretBytes::CopyOf(std::string_view("abcd efgh & jkl mnop"));
    for (const bool accepts : {true, false}) {
        WhenDialogOpens(*qApp, "frmInspectKey", [accepts](QWidget& window) {
            EXPECT_EQ(TextOf(window, "lblKey(0)"), "abcd efgh & jkl ");
            EXPECT_TRUE(Control<QLabel>(window, "lblRandomnessIs").isHidden());
            const QSize size = window.size();
            Press(window, "optHexadecimal");
            EXPECT_EQ(TextOf(window, "lblKey(1)"), " 6D 6E 6F 70");
            EXPECT_EQ(window.size(), size);
            EXPECT_EQ(window.focusWidget(), &Control(window, "cmdYes"));
            QTest::keyClick(&window, Qt::Key_Escape);
            EXPECT_TRUE(window.isVisible()) << "closing is no answer";
            Press(window, accepts ? "cmdYes" : "cmdNo");
        });
        EXPECT_EQ(inspector.Inspect({buffer, "typed", "", false, true, false}), accepts);
    }
}

TEST(ConfirmWindow, AnswersNoUnlessYesHasTheFocus) {
    using enum ConfirmationAnswer;
    ConfirmWindow window({"o", "i", "u", {"w"}, "Leave out", "", "q"});
    for (const auto answer : {No, Yes, YesLeavingOut, No}) {
        window.show();
        if (answer == YesLeavingOut) Control<QCheckBox>(window, "chkLeaveOut").click();
        window.setFocus();
        Control(window, answer == No ? "cmdNo" : "cmdYes").setFocus();
        QTest::keyClick(window.focusWidget(), Qt::Key_Return);
        EXPECT_EQ(window.Answer(), answer);
    }
}

TEST(RandomWindow, CollectsFromMousePenAndFingerOverAllOfIt) {
    StoppedClock clock;
    SystemRandom random;
    RandomKeyCollector rules(clock, random);
    RandomKeyWindow window(rules);
    window.show();
    auto expectAfterTick = [&, before = qsizetype{0}](qsizetype more) mutable {
        QMetaObject::invokeMethod(&Control<QTimer>(window, "Clock"), "timeout");
        const QString progress = Control<QLabel>(window, "lblProgressBar").text();
        EXPECT_EQ(progress.count(QChar(0x2588)), before += more);
    };
    EXPECT_EQ(Control<QTimer>(window, "Clock").interval(), 250);
    QTest::mouseMove(&window, {1, 1});
    expectAfterTick(0); // a resting pointer
    QTest::mouseMove(&window, Control<QLabel>(window, "Label1").geometry().center());
    expectAfterTick(1);
    expectAfterTick(0);
    QTabletEvent pen(QEvent::TabletMove, QPointingDevice::primaryPointingDevice(), {20, 30},
                     {20, 30}, 0, 0, 0, 0, 0, 0, Qt::NoModifier, Qt::NoButton, Qt::NoButton);
    QApplication::sendEvent(&window, &pen);
    expectAfterTick(1);
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    QTest::touchEvent(&window, screen.get()).press(0, {40, 50}, &window);
    expectAfterTick(1);
    QTest::touchEvent(&window, screen.get()).move(0, {44, 55}, &window);
    expectAfterTick(1);
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_EQ(window.result(), QDialog::Rejected);
    EXPECT_EQ(rules.Take().size(), 4U) << "closed early: too few";
}

using PictureWindow = OperationTest;

TEST_F(PictureWindow, DrawsSavesAndCloses) {
    BytePairPicture rules{disk, user, clock, folder.Write("a.bin", std::string(200, 'A') + "zB")};
    QImage saved;
    GraphicWindow window{rules, [&](std::span<const std::byte> png) {
                             saved.loadFromData(reinterpret_cast<const uchar*>(png.data()),
                                                static_cast<int>(png.size()), "PNG");
                         }};
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const auto& picture = Control<PairPicture>(window, "Picture1");
    auto& saving = Control<QAction>(window, "mnuSave");
    EXPECT_FALSE(saving.isEnabled());
    EXPECT_NE(Control<PairPicture>(window, "picRandom").Image(), picture.Image());

    Press(window, "cmdDisplay");
    EXPECT_GT(qGray(picture.Image().pixel('A', 'A')), 240);
    EXPECT_GT(qGray(picture.Image().pixel('z', 'B')), 200);
    EXPECT_EQ(qGray(picture.Image().pixel('B', 'z')), 0);
    EXPECT_TRUE(picture.actions().contains(&saving)) << "the context menu";
    QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier);
    const int axis = saved.width() - 1 - 1024;
    EXPECT_GT(axis, 0);
    EXPECT_EQ(qGray(saved.pixel(axis + 'z' * 4 + 3, axis + 'B' * 4)),
              qGray(picture.Image().pixel('z', 'B')));
    Press(window, "cmdDisplay");
    EXPECT_FALSE(window.isVisible());
}

} // namespace
} // namespace zr5::test
