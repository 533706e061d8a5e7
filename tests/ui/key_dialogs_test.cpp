#include "keys/normalise.h"
#include "support/scripted_user.h"
#include "ui/key_dialog_with_display.h"
#include "ui/key_dialog_without_display.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace zr5 {
namespace {

using test::ScriptedUser;

const QString Typed = QStringLiteral("abcd efgh ijkl mnop");

template <class Widget>
Widget& Named(const QWidget& window, const QString& name) {
    auto* widget = window.findChild<Widget*>(name);
    if (widget == nullptr) throw std::runtime_error("no widget " + name.toStdString());
    return *widget;
}
QLineEdit& Box(const QWidget& window, const QString& name) {
    return Named<QLineEdit>(window, name);
}
QPushButton& Button(const QWidget& window, const QString& name) {
    return Named<QPushButton>(window, name);
}
bool IsShown(const QWidget& window, const QString& name) {
    return Named<QWidget>(window, name).isVisibleTo(&window);
}
QString Caption(const QWidget& window, const QString& name) {
    return Named<QLabel>(window, name).text();
}
void Type(QLineEdit& box, const QString& text) {
    QTest::keyClicks(&box, text);
}
void Press(QWidget& widget, Qt::Key key) {
    QTest::keyClick(&widget, key);
}
void Click(QPushButton& button) {
    QTest::mouseClick(&button, Qt::LeftButton);
}
/// Lets `act` work on the modal window that opens next.
void InNextModalWindow(const std::function<void(QWidget&)>& act) {
    QTimer::singleShot(0, qApp, [act] {
        QWidget* window = QApplication::activeModalWidget();
        ASSERT_NE(window, nullptr);
        act(*window);
    });
}

class WithDisplayWindow : public testing::Test {
  protected:
    void SetUp() override { window.show(); }
    CurrentKey key;
    KeyboardWithDisplay rules{Function::Encrypt, key};
    KeyDialogWithDisplay window{rules};
    QLineEdit& box = Box(window, QStringLiteral("txbKey"));
};

TEST_F(WithDisplayWindow, ShowsItsAnswersOnceTheKeyIsLongEnough) {
    const auto answers = {"cmdYes", "cmdNo", "lblChecksumIs", "lblUseThisKey"};
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Type key (with display)"));
    for (const auto* name : answers)
        EXPECT_FALSE(IsShown(window, name)) << name;
    Type(box, Typed.chopped(1));
    for (const auto* name : answers)
        EXPECT_FALSE(IsShown(window, name)) << name;
    Type(box, QStringLiteral("p"));
    for (const auto* name : answers)
        EXPECT_TRUE(IsShown(window, name)) << name;
    EXPECT_EQ(Caption(window, "lblChecksumIs"), QStringLiteral("Checksum is 6304"));
    Press(box, Qt::Key_Backspace);
    for (const auto* name : answers)
        EXPECT_FALSE(IsShown(window, name)) << name;
}

TEST_F(WithDisplayWindow, AnswersWithItsButtons) {
    Type(box, Typed);
    Click(Button(window, "cmdNo"));
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(window.Answer(), KeyAnswer::No);
}

TEST_F(WithDisplayWindow, TakesEnterInTheBoxForYes) {
    Type(box, Typed);
    Press(box, Qt::Key_Return);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(window.Answer(), KeyAnswer::Yes);
}

TEST_F(WithDisplayWindow, TakesEnterForTheButtonThatHasTheFocus) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    Type(box, Typed);
    Button(window, "cmdCancel").setFocus();
    box.setFocus();
    EXPECT_TRUE(Button(window, "cmdYes").isDefault());
    Button(window, "cmdNo").setFocus();
    Press(Button(window, "cmdNo"), Qt::Key_Return);
    EXPECT_EQ(window.Answer(), KeyAnswer::No);
}

TEST_F(WithDisplayWindow, DoesNotAcceptAShortKeyOnEnterAndCancelsOnEscape) {
    Type(box, QStringLiteral("abc"));
    Press(box, Qt::Key_Return);
    Press(box, Qt::Key_Enter);
    EXPECT_TRUE(window.isVisible());
    Press(box, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(window.Answer(), KeyAnswer::Cancel);
}

TEST_F(WithDisplayWindow, RefusesAnEditWholeAndKeepsTheCursor) {
    Type(box, QStringLiteral("abcdef"));
    box.setCursorPosition(3);
    box.insert(QStringLiteral("xΩ"));
    EXPECT_EQ(box.text(), QStringLiteral("abcdef"));
    EXPECT_EQ(box.cursorPosition(), 3);
    EXPECT_TRUE(IsShown(window, "lblHint"));
    Type(box, QStringLiteral("x"));
    EXPECT_EQ(box.text(), QStringLiteral("abcxdef"));
    EXPECT_EQ(box.cursorPosition(), 4);
    EXPECT_FALSE(IsShown(window, "lblHint"));
}

TEST_F(WithDisplayWindow, ComposesWhatWasTypedInPieces) {
    box.insert(QString::fromUtf8("ae\u0301"));
    EXPECT_EQ(box.text(), QString::fromUtf8("aé"));
    EXPECT_EQ(rules.Entry().text(), "a\xE9");
    EXPECT_EQ(box.cursorPosition(), 2);
}

TEST_F(WithDisplayWindow, KeepsNothingToUndoAndCutsOffLongKeys) {
    box.insert(QString(70, QLatin1Char('x')));
    EXPECT_EQ(box.text().size(), static_cast<qsizetype>(MaxKeyLength));
    EXPECT_FALSE(IsShown(window, "lblHint"));
    EXPECT_FALSE(box.isUndoAvailable());
}

TEST(KeyFromKeyboardWithDisplay, IsTakenAndFilledInTheNextTime) {
    CurrentKey key;
    InNextModalWindow([](QWidget& window) {
        Type(Box(window, "txbKey"), Typed);
        Click(Button(window, "cmdYes"));
    });
    GetKeyFromKeyboardWithDisplay(nullptr, Function::Encrypt, key);
    EXPECT_EQ(key.keyText.text(), "ABCDEFGHIJKLMNOP");

    InNextModalWindow([](QWidget& window) {
        EXPECT_EQ(Box(window, "txbKey").text(), Typed);
        EXPECT_TRUE(IsShown(window, "cmdYes"));
        EXPECT_EQ(Caption(window, "lblChecksumIs"), QStringLiteral("Checksum is 6304"));
        EXPECT_TRUE(Caption(window, "lblEntertheKey").startsWith("Enter the decryption key"));
        Click(Button(window, "cmdNo"));
    });
    GetKeyFromKeyboardWithDisplay(nullptr, Function::Decrypt, key);
    EXPECT_FALSE(key.IsHeld());
    EXPECT_TRUE(key.rawKeyEntry.empty());
}

class WithoutDisplayWindow : public testing::Test {
  protected:
    void SetUp() override { window.show(); }
    bool OkShows() const { return IsShown(window, "cmdOK"); }
    ScriptedUser user;
    KeyboardWithoutDisplay rules{Function::Encrypt};
    KeyDialogWithoutDisplay window{rules, user};
    QLineEdit& first = Box(window, "txbKey(0)");
    QLineEdit& second = Box(window, "txbKey(1)");
};

TEST_F(WithoutDisplayWindow, MasksBothEntries) {
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Type key (without display)"));
    Type(first, Typed);
    Type(second, QStringLiteral("ab"));
    EXPECT_EQ(first.displayText(), QString(Typed.size(), QLatin1Char('#')));
    EXPECT_EQ(second.displayText(), QStringLiteral("##"));
}

TEST_F(WithoutDisplayWindow, LeadsFromTheFirstEntryToTheSecondToOk) {
    EXPECT_FALSE(second.isEnabled());
    EXPECT_FALSE(IsShown(window, "lblChecksumIs"));
    EXPECT_FALSE(Named<QLabel>(window, "lblReEnterTheKey").font().bold());
    Type(first, Typed);
    EXPECT_TRUE(second.isEnabled());
    EXPECT_TRUE(IsShown(window, "lblChecksumIs"));
    EXPECT_EQ(Caption(window, "lblChecksumIs"), QStringLiteral("Checksum is 6304"));
    EXPECT_TRUE(Named<QLabel>(window, "lblReEnterTheKey").font().bold());
    Press(second, Qt::Key_Return);
    EXPECT_TRUE(window.isVisible());
    EXPECT_FALSE(OkShows());
    Type(second, QStringLiteral("ABCDEFGHIJKLMNOP"));
    EXPECT_TRUE(OkShows());
    Press(second, Qt::Key_Return);
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(WithoutDisplayWindow, StaysOpenAfterAMismatchWithTheSecondBoxInFocus) {
    QApplication::setActiveWindow(&window);
    Type(first, Typed);
    Type(second, Typed + QStringLiteral("x"));
    user.Expect("Error", "The key entries do not match!");
    Click(Button(window, "cmdOK"));
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(first.text(), QString());
    EXPECT_EQ(second.text(), Typed + QStringLiteral("x"));
    EXPECT_TRUE(second.isEnabled());
    EXPECT_EQ(window.focusWidget(), &second);
    EXPECT_FALSE(OkShows());
}

TEST_F(WithoutDisplayWindow, ShowsTheHintUnderTheBoxThatRefused) {
    first.insert(QStringLiteral("Ω"));
    EXPECT_TRUE(IsShown(window, "lblHint(0)"));
    EXPECT_FALSE(IsShown(window, "lblHint(1)"));
    EXPECT_EQ(first.text(), QString());
}

TEST(KeyFromKeyboardWithoutDisplay, IsTakenAfterTheQuestionAndNeverFilledInElsewhere) {
    CurrentKey key;
    ScriptedUser user;
    user.Expect("Key specified", "Inspect the key?", Answer::No);
    InNextModalWindow([](QWidget& window) {
        Type(Box(window, "txbKey(0)"), Typed);
        Type(Box(window, "txbKey(1)"), Typed);
        Click(Button(window, "cmdOK"));
    });
    GetKeyFromKeyboardWithoutDisplay(nullptr, user, Function::Encrypt, key);
    EXPECT_EQ(key.keyText.text(), "ABCDEFGHIJKLMNOP");
    EXPECT_TRUE(key.rawKeyEntry.empty());
}

TEST(KeyFromKeyboardWithoutDisplay, IsNotAskedAboutWhenTheWindowIsCancelled) {
    CurrentKey key;
    ScriptedUser user;
    InNextModalWindow([](QWidget& window) {
        Type(Box(window, "txbKey(0)"), Typed);
        Click(Button(window, "cmdCancel"));
    });
    GetKeyFromKeyboardWithoutDisplay(nullptr, user, Function::Encrypt, key);
    EXPECT_FALSE(key.IsHeld());
}

} // namespace
} // namespace zr5
