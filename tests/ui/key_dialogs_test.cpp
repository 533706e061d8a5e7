#include "support/key_windows.h"
#include "support/scripted_user.h"
#include "support/window_driver.h"
#include "ui/key_dialogs.h"

#include <gtest/gtest.h>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

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
    KeyboardWithDisplay rules{Function::Encrypt, key};
    KeyDialogWithDisplay window{rules};
    QLineEdit& box = Control<QLineEdit>(window, "txbKey");
};

TEST_F(WithDisplayWindow, ShowsItsAnswersOnceTheKeyIsLongEnoughAndAnswersEnterByTheFocus) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    Type(Typed.chopped(1));
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_TRUE(window.isVisible());
    QTest::keyClick(&box, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(window.Answer(), KeyAnswer::Cancel);
    window.show();
    Type(Typed.chopped(1)); // again: leaving has wiped the box
    for (const bool shown : {false, true}) {
        if (shown) Type(QStringLiteral("p"));
        for (const auto* name : {"cmdYes", "cmdNo", "lblChecksumIs", "lblUseThisKey"})
            EXPECT_EQ(IsShown(window, name), shown) << name;
    }
    EXPECT_EQ(Caption(window, "lblChecksumIs"), QStringLiteral("Checksum is 6304"));
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(window.Answer(), KeyAnswer::Yes);
    EXPECT_FALSE(window.isVisible());

    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    Control(window, "cmdCancel").setFocus();
    box.setFocus();
    EXPECT_TRUE(Control<QPushButton>(window, "cmdYes").isDefault());
    Control(window, "cmdNo").setFocus();
    QTest::keyClick(&Control(window, "cmdNo"), Qt::Key_Return);
    EXPECT_EQ(window.Answer(), KeyAnswer::No);
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
    EXPECT_EQ(rules.Entry().text(), "a\xE9");
    EXPECT_EQ(box.cursorPosition(), 2);
    box.clear();
    box.insert(QString::fromUtf8("e\u0301").repeated(70));
    EXPECT_EQ(rules.Entry().text(), std::string(64, '\xE9'));
    box.setCursorPosition(3);
    box.insert(QStringLiteral("x"));
    EXPECT_EQ(rules.Entry().text(), std::string(64, '\xE9')) << "no room left";
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
    KeyboardWithoutDisplay rules{Function::Encrypt};
    KeyDialogWithoutDisplay window{rules, user};
    QLineEdit& first = Control<QLineEdit>(window, "txbKey(0)");
    QLineEdit& second = Control<QLineEdit>(window, "txbKey(1)");
};

TEST_F(WithoutDisplayWindow, LeadsFromTheFirstMaskedEntryToTheSecondToOk) {
    const QLabel& again = Control<QLabel>(window, "lblReEnterTheKey");
    for (const bool isLongEnough : {false, true}) {
        QTest::keyClicks(&first, isLongEnough ? QStringLiteral("p") : Typed.chopped(1));
        EXPECT_EQ(second.isEnabled(), isLongEnough);
        EXPECT_EQ(IsShown(window, "lblChecksumIs"), isLongEnough);
        EXPECT_EQ(again.font().bold(), isLongEnough);
    }
    EXPECT_EQ(first.displayText(), QString(Typed.size(), QLatin1Char('#')));
    EXPECT_EQ(Caption(window, "lblChecksumIs"), QStringLiteral("Checksum is 6304"));
    QTest::keyClick(&second, Qt::Key_Return);
    EXPECT_TRUE(window.isVisible() && !IsShown(window, "cmdOK"));
    QTest::keyClicks(&second, QStringLiteral("ABCDEFGHIJKLMNOP"));
    EXPECT_EQ(second.displayText(), QString(16, QLatin1Char('#')));
    EXPECT_TRUE(IsShown(window, "cmdOK"));
    QTest::keyClick(&second, Qt::Key_Return);
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_FALSE(window.isVisible());
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

TEST(KeyFromKeyboardWithoutDisplay, IsNotTakenWhenTheWindowIsCancelled) {
    CurrentKey key;
    ScriptedUser user;
    FakeInspector inspector;
    WhenDialogOpens(*qApp, "frmKeyboardWithoutDisplay", [](QWidget& window) {
        for (const char* box : {"txbKey(0)", "txbKey(1)"})
            QTest::keyClicks(&Control(window, box), Typed);
        Press(window, "cmdCancel");
    });
    GetKeyFromKeyboardWithoutDisplay(nullptr, user, Function::Encrypt, key, inspector);
    EXPECT_FALSE(key.IsHeld());
}

} // namespace
} // namespace zr5::test
