#include "operation/operation_fixture.h"
#include "support/scripted_user.h"
#include "support/window_driver.h"
#include "ui/key_dialogs.h"

#include <gtest/gtest.h>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>

namespace zr5::test {
namespace {

const QString Typed = QStringLiteral("abcd efgh ijkl mnop");

bool IsShown(const QWidget& window, const char* name) {
    return Control(window, name).isVisibleTo(&window);
}
QString Caption(const QWidget& window, const char* name) {
    return Control<QLabel>(window, name).text();
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
    EXPECT_EQ(Caption(window, "lblChecksumIs"), QStringLiteral("Checksum is 6304"));
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

TEST_F(WithoutDisplayWindow, LeadsFromTheFirstMaskedEntryToTheSecondToOk) {
    for (const bool isLongEnough : {false, true}) {
        QTest::keyClicks(&first, isLongEnough ? QStringLiteral("p") : Typed.chopped(1));
        EXPECT_EQ(second.isEnabled(), isLongEnough);
        EXPECT_EQ(IsShown(window, "lblChecksumIs"), isLongEnough);
    }
    EXPECT_EQ(first.displayText(), QString(Typed.size(), QLatin1Char('#')));
    QTest::keyClick(&second, Qt::Key_Return);
    EXPECT_TRUE(window.isVisible() && !IsShown(window, "cmdOK"));
    QTest::keyClicks(&second, QStringLiteral("ABCDEFGHIJKLMNOP"));
    EXPECT_EQ(second.displayText(), QString(16, QLatin1Char('#')));
    EXPECT_TRUE(IsShown(window, "cmdOK"));
    QTest::keyClick(&second, Qt::Key_Return);
    EXPECT_EQ(window.result(), QDialog::Accepted);
}

TEST_F(WithoutDisplayWindow, StaysOpenAfterAMismatchWithTheSecondBoxInFocus) {
    QTest::keyClicks(&first, Typed);
    QTest::keyClicks(&second, Typed + QStringLiteral("x"));
    user.Expect("Error", "The key entries do not match!");
    Press(window, "cmdOK");
    EXPECT_TRUE(window.isVisible() && first.text().isEmpty() && !IsShown(window, "cmdOK"));
    EXPECT_EQ(window.focusWidget(), &second);
    first.insert(QStringLiteral("Ω"));
    EXPECT_TRUE(IsShown(window, "lblHint(0)") && !IsShown(window, "lblHint(1)"));
}

class KeyFromKeyboard : public OperationTest {};

TEST_F(KeyFromKeyboard, IsNotTakenWhenTheWindowIsCancelled) {
    WhenDialogOpens(*qApp, "frmKeyboardWithoutDisplay", [](QWidget& window) {
        for (const char* box : {"txbKey(0)", "txbKey(1)"})
            QTest::keyClicks(&Control(window, box), Typed);
        Press(window, "cmdCancel");
    });
    GetKeyFromKeyboardWithoutDisplay(nullptr, Direction::Encrypt, machine, key);
    EXPECT_EQ(key.keyText.text(), "ABCDEFGHIJKLMNOP") << "as it was";
}

} // namespace
} // namespace zr5::test
