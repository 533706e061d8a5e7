#pragma once

// The whole program on real files, driven through its own windows by the names of the controls.

#include "app/program.h"
#include "app/system_machine.h"
#include "support/scripted_user.h"
#include "support/temporary_folder.h"
#include "support/window_driver.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>

namespace zr5::test {

/// The script of boxes, and a toolkit that goes on working meanwhile.
class LivingUser : public ScriptedUser {
  public:
    void ProcessEvents() override {
        QCoreApplication::processEvents();
        ScriptedUser::ProcessEvents();
    }
};

class EndToEnd : public testing::Test {
  protected:
    static constexpr const char* Key = "abcd efgh ijkl mnop";

    EndToEnd() {
        std::filesystem::copy_file(PROGRAM_TEXTS, home / "zr5e.dat");
        MakeProgram();
        user.onAsk = [](const MessageBox&) { return Answer::Ok; }; // how to begin
        EXPECT_TRUE(program->Start());
        user.onAsk = nullptr;
    }

    void MakeProgram() {
        program = std::make_unique<Program>(machine.For(user, home / "zr5e", home / "config"));
    }
    QWidget& Main() { return program->Window(); }
    void Choose(const char* option) { Control<QRadioButton>(Main(), option).click(); }
    void ChooseInput(const std::string& name, bool decrypts = false) {
        user.ExpectFile(decrypts ? "Select file to be decrypted" : "Select file to be encrypted",
                        folder / name);
        Press(Main(), "cmdSingleFile(0)");
    }
    void ChooseOutput(const std::string& name) {
        user.ExpectFile("Specify output file for the decrypted file", folder / name);
        Press(Main(), "cmdSingleFile(1)");
    }
    void ChooseFolder(const std::string& path, const char* pattern) {
        Choose("optFilesInAFolder");
        user.ExpectFolder("Specify input folder", path);
        Press(Main(), "cmdSpecifyDirectory");
        if (pattern == nullptr) return;
        auto& box = Control<QLineEdit>(Main(), "txbFilePattern");
        box.setText(QString::fromLatin1(pattern));
        QTest::keyClick(&box, Qt::Key_Return);
    }
    std::string Label(const char* name) {
        return Control<QLabel>(Main(), name).text().toStdString();
    }
    void TypeKey(const char* key = Key) {
        Press(Main(), "cmdKeyFrom");
        WhenDialogOpens(Main(), "frmKeyboardWithDisplay", [key](QWidget& dialog) {
            auto& box = Control<QLineEdit>(dialog, "txbKey");
            box.clear();
            QTest::keyClicks(&box, QString::fromLatin1(key));
            Press(dialog, "cmdYes");
        });
        Press(Main(), "cmdKeyboardWithDisplay");
    }
    std::string Perform() {
        WhenDialogOpens(Main(), "frmConfirmOperation", [this](QWidget& dialog) {
            if (leavesOut) Control<QCheckBox>(dialog, "chkLeaveOut").click();
            Press(dialog, "cmdYes");
        });
        return ReportAfter("cmdDoIt");
    }
    std::string ReportAfter(const char* button) {
        Press(Main(), button);
        QWidget* report = TopWindow("frmReport");
        if (report == nullptr) return "no report";
        const QString text = Control<QPlainTextEdit>(*report, "txbText").toPlainText();
        Press(*report, "cmdClose");
        EXPECT_FALSE(report->isVisible());
        return text.toStdString();
    }

    bool Reports(std::string_view text) { return Perform().find(text) != std::string::npos; }

    bool leavesOut = false; ///< what is done already
    TemporaryFolder home;
    TemporaryFolder folder;
    LivingUser user;
    SystemMachine machine;
    std::unique_ptr<Program> program;
};

} // namespace zr5::test
