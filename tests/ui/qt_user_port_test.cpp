#include "ui/qt_user_port.h"

#include "support/temporary_folder.h"
#include "support/window_driver.h"
#include "util/paths.h"

#include <array>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <QWindow>
#include <sys/stat.h>
#include <unistd.h>

namespace zr5 {
namespace {

/// Lets `act` work on the modal window of this kind that opens next.
template <typename Window>
void InNext(const std::function<void(Window&)>& act) {
    QTimer::singleShot(0, qApp, [act] {
        auto* window = qobject_cast<Window*>(QApplication::activeModalWidget());
        ASSERT_NE(window, nullptr);
        act(*window);
        if (window->isVisible()) window->reject();
    });
}

void Press(QMessageBox& box, Qt::Key key) {
    QTest::keyClick(&box, key);
}

TEST(MessageBoxes, AnswerWithTheDefaultOnEnterAndWithWhatChangesNothingOnEscape) {
    QtUserPort user;
    const struct {
        BoxButtons buttons;
        Answer byDefault;
        Answer onEscape;
    } cases[] = {{BoxButtons::Ok, Answer::Ok, Answer::Ok},
                 {BoxButtons::YesNo, Answer::Yes, Answer::No},
                 {BoxButtons::YesNo, Answer::No, Answer::No},
                 {BoxButtons::YesNoCancel, Answer::Yes, Answer::Cancel},
                 {BoxButtons::RetryCancel, Answer::Retry, Answer::Cancel}};
    for (const auto& [buttons, byDefault, onEscape] : cases) {
        const MessageBox box{"Text", "Title", BoxIcon::Question, buttons, byDefault};
        InNext<QMessageBox>([](QMessageBox& window) { Press(window, Qt::Key_Return); });
        EXPECT_EQ(user.Ask(box), byDefault);
        InNext<QMessageBox>([](QMessageBox& window) { Press(window, Qt::Key_Escape); });
        EXPECT_EQ(user.Ask(box), onEscape);
    }
}

TEST(WorkThatTakesLong, IsShownUntilItEndsAndKeepsInputFromTheOtherWindows) {
    QtUserPort user;
    QPushButton behind;
    QObject::connect(&behind, &QPushButton::clicked, [] { ADD_FAILURE() << "clicked"; });
    behind.show();
    user.ShowWork({"Mending:\r\n/a/<b>x", 1, 4});
    QWidget* window = QApplication::activeModalWidget();
    ASSERT_NE(window, nullptr);
    QTest::keyClick(window, Qt::Key_Escape);
    window->close();
    QTest::mouseClick(behind.windowHandle(), Qt::LeftButton);
    user.ShowWork({"Mending:\r\n/a/<b>x", 5'000'000'000, 10'000'000'000});
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->findChild<QLabel*>()->text(), "Mending:\n/a/<b>x");
    EXPECT_EQ(window->findChild<QProgressBar*>()->value(), 500);
    user.EndWork();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST(WorkThatTakesLong, IsStoppedByItsButtonEscapeAndTheWindowsFrameAndKeepsBeforeItsParent) {
    QtUserPort user;
    QWidget parent;
    parent.show();
    parent.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&parent));
    int stops = 0;
    for (const auto& stop : std::vector<std::function<void(QWidget&)>>{
             [](QWidget& window) { test::Press(window, "cmdStop"); },
             [](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); },
             [](QWidget& window) { window.close(); }}) {
        user.ShowWork({.text = "Searching", .stop = [&] { ++stops; }});
        QWidget* window = test::TopWindow("frmWork");
        ASSERT_NE(window, nullptr);
        EXPECT_FALSE(window->isModal());
        parent.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window));
        stop(*window);
        EXPECT_TRUE(window->isVisible()) << "until the work has heard of it";
        user.EndWork();
        parent.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&parent));
    }
    EXPECT_EQ(stops, 3);
}

TEST(MessageBoxes, ThatMustBeAnsweredAreLeftByTheirButtonsOnly) {
    QtUserPort user;
    for (const auto& [button, answer] :
         {std::pair{QMessageBox::Yes, Answer::Yes}, {QMessageBox::No, Answer::No}}) {
        InNext<QMessageBox>([button = button](QMessageBox& window) {
            Press(window, Qt::Key_Escape);
            window.close();
            window.reject();
            EXPECT_TRUE(window.isVisible());
            window.button(button)->click();
        });
        EXPECT_EQ(user.Ask(MustAnswer("Text", "Title")), answer);
    }
}

TEST(MessageBoxes, AreLeftWithoutAnAnswerWhenTheProgramIsToEnd) {
    for (const MessageBox& box : {MustAnswer("Text", "Title"), Notice("Text", "Title")}) {
        QtUserPort user;
        InNext<QMessageBox>([&](QMessageBox& window) {
            user.EndQuestions();
            EXPECT_FALSE(window.isVisible());
        });
        EXPECT_EQ(user.Ask(box), Answer::Cancel);
        EXPECT_EQ(user.Ask(box), Answer::Cancel) << "and none opens any more";
        EXPECT_EQ(user.Ask(Question("Text", "Title")), Answer::No);
        QDialog other;
        EXPECT_EQ(other.exec(), QDialog::Rejected);
    }
}

TEST(MessageBoxes, ShowNamesAsTheyAreAndLongOnesWholeAndFitTheScreen) {
    QtUserPort user;
    for (const std::string& text :
         {std::string("<b>a.txt</b>\r\nb"), std::string(200, 'W'), std::string(20000, 'W')}) {
        InNext<QMessageBox>([&](QMessageBox& window) {
            EXPECT_EQ(window.windowTitle(), "A title longer than its text");
            EXPECT_EQ(window.icon(), QMessageBox::Critical);
            EXPECT_EQ(window.textFormat(), Qt::PlainText);
            EXPECT_EQ(window.text().toStdString(), text[0] == '<' ? "<b>a.txt</b>\nb" : text);
            EXPECT_GT(window.width(),
                      window.fontMetrics().horizontalAdvance(window.windowTitle()) + 100);
            EXPECT_LT(window.height(), window.screen()->availableGeometry().height());
            EXPECT_EQ(window.focusWidget(), window.button(QMessageBox::Ok));
            const auto* label = window.findChild<QLabel*>("lblText");
            ASSERT_NE(label, nullptr);
            EXPECT_GE(label->height(), label->heightForWidth(label->width()));
            EXPECT_GE(label->height(), (text.size() < 100 ? 2 : 3) * label->fontMetrics().height());
        });
        const auto box = Notice(text, "A title longer than its text", BoxIcon::Critical);
        EXPECT_EQ(user.Ask(box), Answer::Ok);
    }
}

TEST(Clipboard, GetsTheLineEndsOfTheDesktop) {
    QtUserPort user;
    user.CopyToClipboard("one\r\ntwo \xc3\xa9");
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), "one\ntwo \xc3\xa9");
}

class Pickers : public testing::Test {
  protected:
    void TypeInNext(const std::string& name) {
        InNext<QFileDialog>([name](QFileDialog& dialog) {
            EXPECT_EQ(dialog.windowTitle(), "Pick");
            TypeInto(dialog, name + "\n");
        });
    }
    /// Key by key, also into what completes the name; "\n" is Enter.
    static void TypeInto(QFileDialog& dialog, const std::string& keys) {
        auto* box = dialog.findChild<QLineEdit*>("fileNameEdit");
        ASSERT_NE(box, nullptr);
        for (const char key : keys) {
            QWidget* popup = QApplication::activePopupWidget();
            QTest::keyClick(popup != nullptr ? popup : box, key == '\n' ? '\r' : key);
        }
    }
    std::string PickFolder(const std::string& start) {
        return user.PickFolder({.title = "Pick", .startFolder = start}).value_or("");
    }
    std::optional<std::string> Pick(FilePicker::Kind kind) {
        return user.PickFile({.kind = kind,
                              .title = "Pick",
                              .filter = "Any file | *.*",
                              .startFolder = folder.Path(),
                              .asksBeforeOverwriting = true});
    }
    test::TemporaryFolder folder;
    QtUserPort user;
};

TEST_F(Pickers, LetEveryNameThroughAlsoOneThatDoesNotExist) {
    folder.Write("without a dot", "x");
    for (const std::string name :
         {"without a dot", "missing", "tmp/missing", "caf\\xE9", "say \"hi\".txt"}) {
        TypeInNext(name);
        EXPECT_EQ(Pick(FilePicker::Kind::Open), folder / name);
    }
    TypeInNext("");
    EXPECT_EQ(user.PickFile({.kind = FilePicker::Kind::Save,
                             .title = "Pick",
                             .filter = {},
                             .startFolder = folder.Path(),
                             .suggestedName = "new.zr5"}),
              folder / "new.zr5");
    const QDir here(QString::fromStdString(folder.Path()));
    for (const char* other : {"Pick", "Setup"}) {
        InNext<QFileDialog>([&](QFileDialog& dialog) {
            EXPECT_EQ(dialog.directory() == here, dialog.windowTitle() == "Pick");
        });
        FilePicker picker;
        picker.title = other;
        EXPECT_EQ(user.PickFile(picker), std::nullopt);
    }
}

TEST_F(Pickers, ChooseWhatStandsInTheNameBoxWhateverCompletesIt) {
    for (const char* sub : {"box/b", "box/bb", "p/q", "p/r"})
        std::filesystem::create_directories(folder / sub);
    const std::string other = folder / "p/r";
    for (const auto& [start, typed, chosen] : {std::array<std::string, 3>{"", "box/bb", "box/bb"},
                                               {"", "box/b", "box/b"},
                                               {"box", "bb", "box/bb"},
                                               {"p/q", "p/r", "p/q/p/r"}, // which is not there
                                               {"p/q", "../r", "p/r"},
                                               {"box", other, "p/r"},
                                               {"box", "..\n", ""},
                                               {"p/q", "", "p/q"}}) {
        TypeInNext(typed);
        EXPECT_EQ(PickFolder(folder / start) + "/", WithTrailingSeparator(folder / chosen));
    }
    InNext<QFileDialog>([this](QFileDialog& dialog) {
        const auto* list = dialog.findChild<QTreeView*>("treeView");
        const auto place = [list] {
            const QModelIndex first = list->model()->index(0, 0, list->rootIndex());
            return list->visualRect(list->model()->match(first, Qt::DisplayRole, "bb").value(0));
        };
        EXPECT_TRUE(QTest::qWaitFor([&] { return place().isValid(); }));
        TypeInto(dialog, "b");
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place().center());
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
    });
    EXPECT_EQ(PickFolder(folder / "box"), folder / "box/bb") << "marked last";
    for (const auto& [typed, chosen] :
         {std::pair{std::string("box\nb\n"), std::string(folder / "box/b/new")},
          {"~/", QDir::homePath().toStdString() + "/new"}}) {
        TypeInNext(typed + "\nnew");
        EXPECT_EQ(Pick(FilePicker::Kind::Save), chosen) << "folders on the way are entered";
    }
}

TEST_F(Pickers, OpenNoFileForItsIcon) {
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink("pipe", folder / "link.txt");
    folder.Write("note.txt", "x");
    InNext<QFileDialog>([this](QFileDialog& dialog) {
        const auto* list = dialog.findChild<QTreeView*>("treeView");
        const auto type = [list] {
            return list->model()->index(0, 2, list->rootIndex()).data().toString();
        };
        EXPECT_TRUE(QTest::qWaitFor([&] { return type() == "txt file"; }));
        close(open((folder / "pipe").c_str(), O_RDWR)); // frees whoever waits for it
    });
    EXPECT_EQ(Pick(FilePicker::Kind::Open), std::nullopt);
}

TEST_F(Pickers, LeaveNoHistory) {
    const QSettings history(QSettings::UserScope, "QtProject");
    EXPECT_FALSE(history.isWritable()) << history.fileName().toStdString();
}

TEST_F(Pickers, AskBeforeAnExistingOutputIsChosen) {
    for (const char* name : {"<b>old.zr5", "old \"one\".zr5"}) {
        folder.Write(name, "x");
        bool asked = false;
        InNext<QFileDialog>([&](QFileDialog& dialog) {
            InNext<QMessageBox>([&](QMessageBox& question) {
                asked = question.textFormat() == Qt::PlainText;
                Press(question, Qt::Key_Escape);
            });
            TypeInto(dialog, std::string(name) + "\n");
            dialog.QDialog::reject();
        });
        EXPECT_EQ(Pick(FilePicker::Kind::Save), std::nullopt) << name;
        EXPECT_TRUE(asked) << name;
    }
}

} // namespace
} // namespace zr5
