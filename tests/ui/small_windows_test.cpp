#include "operation/operation_fixture.h"
#include "support/window_driver.h"
#include "ui/confirm_window.h"
#include "ui/graphic_window.h"
#include "ui/inspect_key_window.h"
#include "ui/random_key_window.h"

#include <QAction>
#include <QLabel>
#include <QPointingDevice>
#include <QTabletEvent>

namespace zr5::test {
namespace {

std::string TextOf(const QWidget& window, const char* name) {
    return Control<QLabel>(window, name).text().toStdString();
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
    ConfirmWindow window({"o", "i", "u", "", "", "q"});
    for (const bool accepts : {false, true}) {
        window.show();
        if (accepts) QTest::keyClick(window.focusWidget(), Qt::Key_Left);
        QTest::keyClick(window.focusWidget(), Qt::Key_Return);
        EXPECT_EQ(window.result(), accepts ? QDialog::Accepted : QDialog::Rejected);
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
    EXPECT_TRUE(Control<QLabel>(window, "lblHint").isHidden());
    for (int i = 0; i < 12; ++i)
        expectAfterTick(0);
    EXPECT_FALSE(Control<QLabel>(window, "lblHint").isHidden());
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_EQ(window.result(), QDialog::Rejected);
    EXPECT_EQ(rules.Take().size(), 4U) << "closed early: too few";
}

using PictureWindow = OperationTest;

TEST_F(PictureWindow, DrawsSavesAndCloses) {
    BytePairPicture rules{*disk, user, clock, folder.Write("a.bin", std::string(200, 'A') + "zB")};
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
    EXPECT_LE(window.minimumSizeHint().width(), 480);
    EXPECT_LE(window.minimumSizeHint().height(), 480);

    Press(window, "cmdDisplay");
    const auto& bar = Control<QLabel>(window, "lblProgressBar");
    EXPECT_EQ(bar.width(), bar.parentWidget()->width());
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
