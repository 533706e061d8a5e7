#include "support/scripted_user.h"
#include "support/stopped_clock.h"
#include "support/temporary_folder.h"
#include "support/window_driver.h"
#include "ui/graphic_window.h"
#include "ui/pair_picture.h"

#include <gtest/gtest.h>
#include <QAction>
#include <QLabel>
#include <QPushButton>

namespace zr5::test {
namespace {

class GraphicWindowTest : public testing::Test {
  protected:
    GraphicWindowTest() {
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    std::string Caption() {
        return Control<QPushButton>(window, "cmdDisplay").text().toStdString();
    }

    TemporaryFolder folder;
    std::unique_ptr<FileSystem> disk = MakeSystemFileSystem();
    ScriptedUser user;
    StoppedClock clock;
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
    EXPECT_EQ(saved.size(), QSize(1024, 1024));
    EXPECT_EQ(qGray(saved.pixel('z' * 4 + 3, 'B' * 4)), qGray(picture.Image().pixel('z', 'B')));
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
