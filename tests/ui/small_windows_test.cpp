#include "operation/operation_fixture.h"
#include "support/window_driver.h"
#include "ui/confirm_window.h"
#include "ui/graphic_window.h"
#include "ui/inspect_key_window.h"
#include "ui/random_key_window.h"

#include <QAction>
#include <QLabel>
#include <QPointingDevice>
#include <QPushButton>
#include <QRadioButton>
#include <QTabletEvent>

namespace zr5::test {
namespace {

std::string TextOf(const QWidget& window, const char* name) {
    return Control<QLabel>(window, name).text().toStdString();
}

TEST(InspectKeyWindow, SwitchesViewsAndReturnsToYes) {
    ScriptedUser user;
    FakeKit kit;
    InspectInWindow inspector(nullptr, user, kit);
    const SecretBytes buffer = SecretBytes::CopyOf(std::string_view("abcd efgh & jkl mnop"));
    for (const bool accepts : {true, false}) {
        WhenDialogOpens(*qApp, "frmInspectKey", [accepts](QWidget& window) {
            EXPECT_EQ(window.windowTitle(), "Inspect the key");
            EXPECT_EQ(TextOf(window, "lbl64Byte"), "Key entered at keyboard");
            EXPECT_EQ(TextOf(window, "lblKey(0)"), "abcd efgh & jkl ");
            EXPECT_TRUE(Control<QLabel>(window, "lblRandomnessIs").isHidden());
            EXPECT_TRUE(Control<QRadioButton>(window, "optASCII").isChecked());
            const QSize size = window.size();
            Press(window, "optHexadecimal");
            EXPECT_EQ(TextOf(window, "lblKey(1)"), " 6D 6E 6F 70");
            EXPECT_TRUE(Control(window, "optHexadecimal").font().bold());
            EXPECT_FALSE(Control(window, "optASCII").font().bold());
            EXPECT_EQ(window.size(), size);
            EXPECT_EQ(window.focusWidget(), &Control(window, "cmdYes"));
            QTest::keyClick(&window, Qt::Key_Escape);
            EXPECT_TRUE(window.isVisible()) << "closing is no answer";
            Press(window, accepts ? "cmdYes" : "cmdNo");
        });
        EXPECT_EQ(inspector.Inspect({buffer, "Key entered at keyboard", "", false, true, false}),
                  accepts);
    }
}

TEST(ConfirmWindow, AnswersNoUnlessYesHasTheFocus) {
    ConfirmWindow window({"o", "i", "u", "", "", "q"});
    for (const bool accepts : {false, true}) {
        window.show();
        if (accepts) QTest::keyClick(window.focusWidget(), Qt::Key_Left);
        QTest::keyClick(window.focusWidget(), Qt::Key_Return);
        EXPECT_EQ(window.result(), accepts ? QDialog::Accepted : QDialog::Rejected);
    }
}

class RandomWindow : public testing::Test {
  protected:
    RandomWindow() {
        window.show();
        Move(1, 1); // where the pointer rests
    }
    void Move(int x, int y) { QTest::mouseMove(&window, {x, y}); }
    /// How many characters one tick of the clock brings.
    std::size_t AfterTick() {
        const auto count = [this] {
            return Control<QLabel>(window, "lblProgressBar").text().count(QChar(0x2588));
        };
        const qsizetype before = count();
        QMetaObject::invokeMethod(&Control<QTimer>(window, "Clock"), "timeout");
        return static_cast<std::size_t>(count() - before);
    }
    StoppedClock clock;
    SystemRandom random;
    RandomKeyCollector rules{clock, random};
    RandomKeyWindow window{rules};
};

TEST_F(RandomWindow, CollectsFromMousePenAndFingerOverAllOfIt) {
    EXPECT_EQ(Control<QTimer>(window, "Clock").interval(), 250);
    EXPECT_EQ(AfterTick(), 0U) << "a resting pointer";
    const QPoint overText = Control<QLabel>(window, "Label1").geometry().center();
    Move(overText.x(), overText.y());
    EXPECT_EQ(AfterTick(), 1U);
    EXPECT_EQ(AfterTick(), 0U);

    QTabletEvent pen(QEvent::TabletMove, QPointingDevice::primaryPointingDevice(), {20, 30},
                     {20, 30}, 0, 0, 0, 0, 0, 0, Qt::NoModifier, Qt::NoButton, Qt::NoButton);
    QApplication::sendEvent(&window, &pen);
    EXPECT_EQ(AfterTick(), 1U);

    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    QTest::touchEvent(&window, screen.get()).press(0, {40, 50}, &window);
    EXPECT_EQ(AfterTick(), 1U);
    QTest::touchEvent(&window, screen.get()).move(0, {44, 55}, &window);
    EXPECT_EQ(AfterTick(), 1U);

    EXPECT_TRUE(Control<QLabel>(window, "lblHint").isHidden());
    for (int i = 0; i < 12; ++i)
        static_cast<void>(AfterTick());
    EXPECT_FALSE(Control<QLabel>(window, "lblHint").isHidden());
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_EQ(window.result(), QDialog::Rejected);
    EXPECT_EQ(rules.Take().size(), 4U) << "closed early: too few";
}

class GraphicWindowTest : public OperationTest {
  protected:
    GraphicWindowTest() {
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    std::string Caption() {
        return Control<QPushButton>(window, "cmdDisplay").text().toStdString();
    }

    BytePairPicture rules{*disk, user, clock, folder.Write("a.bin", std::string(200, 'A') + "zB")};
    QImage saved;
    GraphicWindow window{rules, [this](std::span<const std::byte> png) {
                             saved.loadFromData(reinterpret_cast<const uchar*>(png.data()),
                                                static_cast<int>(png.size()), "PNG");
                         }};
};

TEST_F(GraphicWindowTest, DrawsSavesAndCloses) {
    EXPECT_EQ(window.objectName(), "frmGraphic");
    EXPECT_EQ(Caption(), "Display");
    auto& picture = Control<PairPicture>(window, "Picture1");
    auto& saving = Control<QAction>(window, "mnuSave");
    EXPECT_FALSE(saving.isEnabled());
    EXPECT_NE(Control<PairPicture>(window, "picRandom").Image(), picture.Image());
    auto& bar = Control<QLabel>(window, "lblProgressBar");
    EXPECT_EQ(bar.width(), 0);

    Press(window, "cmdDisplay");
    EXPECT_EQ(Caption(), "Close");
    EXPECT_EQ(bar.width(), bar.parentWidget()->width());
    EXPECT_GT(qGray(picture.Image().pixel('A', 'A')), 240);
    EXPECT_GT(qGray(picture.Image().pixel('z', 'B')), 200);
    EXPECT_EQ(qGray(picture.Image().pixel('B', 'z')), 0);
    EXPECT_TRUE(picture.actions().contains(&saving)) << "the context menu";
    QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier);
    const int axis = saved.width() - 1 - 1024;
    EXPECT_GT(axis, 0);
    EXPECT_EQ(qGray(saved.pixel(0, 0)), 255);
    EXPECT_EQ(qGray(saved.pixel(axis + 'z' * 4 + 3, axis + 'B' * 4)),
              qGray(picture.Image().pixel('z', 'B')));
    Press(window, "cmdDisplay");
    EXPECT_FALSE(window.isVisible());
}

TEST_F(GraphicWindowTest, FitsSmallWindows) {
    EXPECT_LE(window.minimumSizeHint().width(), 480);
    EXPECT_LE(window.minimumSizeHint().height(), 480);
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}

} // namespace
} // namespace zr5::test
