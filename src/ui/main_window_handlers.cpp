// What each control of the main window leads to.

#include "ui/main_window.h"
#include "ui/notices.h"
#include "ui/randomness_pane.h"
#include "ui/text_edges.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <utility>

namespace zr5 {
namespace {

/// There is one help window, which stays where the user has put it.
void ShowHelp(MainWindow& window) {
    auto* help = window.findChild<QDialog*>("frmHelp");
    if (help == nullptr) help = new HelpWindow(&window);
    help->show();
    help->raise();
    help->activateWindow();
}

} // namespace

void MainWindow::OnButton(const char* name, std::function<void()> act) {
    connect(&Find<QPushButton>(name), &QPushButton::clicked, this, std::move(act));
}

void MainWindow::ConnectOptions() {
    const auto on = [this](const char* name, void (*select)(SetupDesk&)) {
        connect(&Find<QRadioButton>(name), &QRadioButton::clicked, this, [this, select] {
            select(parts_.desk);
            Refresh();
        });
    };
    on("optEncrypt", [](SetupDesk& desk) { desk.SelectFunction(Function::Encrypt); });
    on("optDecrypt", [](SetupDesk& desk) { desk.SelectFunction(Function::Decrypt); });
    on("optSingleFile", [](SetupDesk& desk) { desk.SelectInputMode(InputSource::SingleFile); });
    on("optFilesInAFolder",
       [](SetupDesk& desk) { desk.SelectInputMode(InputSource::FilesInAFolder); });
    on("optOverwriteInputFiles",
       [](SetupDesk& desk) { desk.SelectOutputMode(OutputTarget::OverwriteInput); });
    on("optWriteToSeparateOutputFiles",
       [](SetupDesk& desk) { desk.SelectOutputMode(OutputTarget::SeparateOutput); });
    on("optSubfolders", [](SetupDesk& desk) { desk.AnswerSubfolders(true); });
    on("optNotSubfolders", [](SetupDesk& desk) { desk.AnswerSubfolders(false); });
}

void MainWindow::ConnectFiles() {
    OnButton("cmdSingleFile(0)", [this] {
        parts_.singleFile.ChooseInput(Caption("cmdSingleFile(0)"));
        Refresh();
    });
    OnButton("cmdSingleFile(1)", [this] {
        parts_.singleFile.ChooseOutput(Caption("cmdSingleFile(1)"));
        Refresh();
    });
    OnButton("cmdSpecifyDirectory", [this] { ChooseFolder(); });
    OnButton("cmdSpecifyFiles(0)", [this] {
        if (!LeaveTextBoxes()) return;
        parts_.specifyInputFiles(*this);
        Refresh();
    });
    OnButton("cmdSpecifyFiles(1)", [this] {
        parts_.specifyOutputFiles(*this);
        Refresh();
    });
    OnButton("cmdListFiles", [this] {
        if (!LeaveTextBoxes()) return;
        parts_.actions.ListFiles(Caption("cmdListFiles"));
        OperationEnded();
    });
}

void MainWindow::ChooseFolder() {
    if (!LeaveTextBoxes()) return;
    parts_.actions.WhileOutOfUse([this](const StopAsked& stopped) {
        parts_.folder.ChooseInput(Caption("cmdSpecifyDirectory"), stopped);
    });
    OperationEnded();
}

void MainWindow::ConnectMenu() {
    OnButton("cmdKeyFrom", [this] {
        keyFrame_.Open(parts_.key, keyLabels_);
        ShowPane(Pane::Key, "cmdKeyboardWithDisplay");
    });
    OnButton("cmdDoIt", [this] { Perform(); });
    OnButton("cmdRandomnessReport", [this] {
        parts_.randomness->Open();
        OperationEnded();
    });
    OnButton("cmdReportScreen", [this] {
        if (parts_.actions.ReportIsEmpty()) {
            parts_.user.Ask(EmptyReportBox());
        } else {
            parts_.actions.ShowReport();
        }
    });
    OnButton("cmdSetup", [this] {
        if (LeaveTextBoxes()) ShowPane(Pane::Setup, "cmdKeepSetup");
    });
    OnButton("cmdHelp(0)", [this] { parts_.program.OpenManual(); });
    OnButton("cmdHelp(1)", [this] { ShowHelp(*this); });
    OnButton("cmdQuit", [this] { close(); });
    connect(&Find<QLabel>("lblMaker"), &QLabel::linkActivated, this,
            [this] { parts_.program.OpenMakerSite(); });
}

void MainWindow::Perform() {
    if (!LeaveTextBoxes()) return;
    const bool ready = parts_.desk.ReadyToPerform();
    Refresh();
    if (!ready) return;
    parts_.actions.Perform();
    OperationEnded();
}

void MainWindow::ShowPane(Pane pane, const char* focusAfter) {
    parts_.desk.Show(pane);
    Refresh();
    Find<QPushButton>(focusAfter).setFocus();
}

void MainWindow::ConnectSetupPanes() {
    const auto thenMenu = [this](const char* name, std::function<void()> act) {
        OnButton(name, [this, act = std::move(act)] {
            act();
            ShowPane(Pane::Menu, "cmdSetup");
        });
    };
    OnButton("cmdSaveSetup", [this] { ShowPane(Pane::SaveSetup, "cmdDontSaveSetup"); });
    thenMenu("cmdClearSetup", [this] {
        parts_.desk.ResetSetup();
        EraseKey(parts_.key, parts_.engine);
        RefreshKeyLabels();
    });
    thenMenu("cmdKeepSetup", [] {});
    thenMenu("cmdDontSaveSetup", [] {});
    if (parts_.setupStore == nullptr) return;
    thenMenu("cmdLoadSetup", [this] {
        parts_.desk.Show(Pane::Waiting);
        Refresh();
        parts_.setupStore->LoadOperationFile([this] { NoteDialogClosed(); }, [this] { Refresh(); });
    });
    thenMenu("cmdSaveSetupForNextRun", [this] { parts_.setupStore->SaveForNextRun(); });
    thenMenu("cmdSaveSetupAsOperationFile",
             [this] { parts_.setupStore->SaveAsOperationFile([this] { NoteDialogClosed(); }); });
}

void MainWindow::ConnectKeyPane() {
    const auto choosing = [this](const char* name, std::function<void()> choose) {
        OnButton(name, [this, choose = std::move(choose)] {
            choose();
            RefreshKeyLabels();
            CloseKeyPane();
        });
    };
    choosing("cmdKeyboardWithDisplay", [this] { parts_.typeKeyWithDisplay(*this); });
    choosing("cmdKeyboardWithoutDisplay", [this] { parts_.typeKeyWithoutDisplay(*this); });
    choosing("cmdKeyFile(0)", [this] { parts_.getKeyFromKeyfile(*this, KeyfileMode::Existing); });
    choosing("cmdKeyFile(1)", [this] { parts_.getKeyFromKeyfile(*this, KeyfileMode::Create); });
    choosing("cmdEraseKey", [this] { EraseKeyAndTell(parts_.key, parts_.engine, parts_.user); });
    OnButton("cmdDontSpecifyKeyNow", [this] { CloseKeyPane(); });
}

void MainWindow::CloseKeyPane() {
    const bool toKey = keyFrame_.Close(parts_.key) == KeyFrame::FocusAfter::KeyFrom;
    ShowPane(Pane::Menu, toKey ? "cmdKeyFrom" : "cmdDoIt");
}

void MainWindow::RefreshKeyLabels() {
    keyLabels_ = UpdateKeyLabels(parts_.key, keyLabels_, keyFrame_.SavedLabels(), parts_.user);
    Find<QLabel>("lblKeyFrom(0)").setText(ToQt(keyLabels_[0]));
    Find<QLabel>("lblKeyFrom(1)").setText(ToQt(keyLabels_[1]));
    ApplyPalette();
}

void MainWindow::ConnectRandomnessPane() {
    const auto check = [this](const char* name, std::size_t file) {
        OnButton(name, [this, file] {
            parts_.randomness->Check(file);
            OperationEnded();
        });
    };
    check("cmdRandomnessFile(0)", Input);
    check("cmdRandomnessFile(1)", Output);
    OnButton("cmdDisplayGraphic",
             [this] { parts_.showGraphic(*this, parts_.randomness->Shown().path); });
    OnButton("cmdNoRandomnessReport", [this] { parts_.randomness->Close(); });
    if (parts_.randomness != nullptr) parts_.randomness->SetView([this] { ShowRandomness(); });
}

void MainWindow::ShowRandomness() {
    Refresh();
    Find<RandomnessPane>("fraRandomnessFiles").Show(*parts_.randomness);
    if (parts_.randomness->state() == RandomnessReport::State::Closed)
        Find<QPushButton>("cmdRandomnessReport").setFocus();
}

} // namespace zr5
