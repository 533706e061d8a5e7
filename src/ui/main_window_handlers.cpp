// What each control of the main window leads to.

#include "ui/appearance.h"
#include "ui/main_window.h"
#include "ui/notices.h"
#include "ui/randomness_pane.h"
#include "ui/text_edges.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace zr5 {

void MainWindow::OnButton(const char* name, Handler handler) {
    connect(&Find<QPushButton>(name), &QPushButton::clicked, this,
            [this, handler] { (this->*handler)(); });
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

void MainWindow::ConnectMenu() {
    OnButton("cmdSingleFile(0)", &MainWindow::ChooseInput);
    OnButton("cmdSingleFile(1)", &MainWindow::ChooseOutput);
    OnButton("cmdSpecifyDirectory", &MainWindow::ChooseFolder);
    OnButton("cmdSpecifyFiles(0)", &MainWindow::SpecifyInputFiles);
    OnButton("cmdSpecifyFiles(1)", &MainWindow::SpecifyOutputFiles);
    OnButton("cmdListFiles", &MainWindow::ListFiles);
    OnButton("cmdKeyFrom", &MainWindow::OpenKeyFrame);
    OnButton("cmdDoIt", &MainWindow::Perform);
    OnButton("cmdRandomnessReport", &MainWindow::OpenRandomnessReport);
    OnButton("cmdReportScreen", &MainWindow::ViewReport);
    OnButton("cmdSetup", &MainWindow::OpenSetup);
    OnButton("cmdHelp(0)", &MainWindow::OpenManual);
    OnButton("cmdHelp(1)", &MainWindow::ShowHelp);
    OnButton("cmdQuit", &MainWindow::Quit);
    connect(&Find<QLabel>("lblMaker"), &QLabel::linkActivated, this, [this] { OpenMakerSite(); });
}

void MainWindow::ConnectSetupFrames() {
    if (parts_.setupStore != nullptr) {
        OnButton("cmdLoadSetup", &MainWindow::LoadSetup);
        OnButton("cmdSaveSetupForNextRun", &MainWindow::SaveSetupForNextRun);
        OnButton("cmdSaveSetupAsOperationFile", &MainWindow::SaveSetupAsOperationFile);
    }
    OnButton("cmdSaveSetup", &MainWindow::OpenSaveSetup);
    OnButton("cmdClearSetup", &MainWindow::ClearSetup);
    OnButton("cmdKeepSetup", &MainWindow::CloseSetup);
    OnButton("cmdDontSaveSetup", &MainWindow::CloseSetup);
}

void MainWindow::ConnectKeyFrame() {
    OnButton("cmdKeyboardWithDisplay", &MainWindow::TypeKeyWithDisplay);
    OnButton("cmdKeyboardWithoutDisplay", &MainWindow::TypeKeyWithoutDisplay);
    OnButton("cmdKeyFile(0)", &MainWindow::GetKeyFromKeyfile);
    OnButton("cmdKeyFile(1)", &MainWindow::CreateKeyfile);
    OnButton("cmdEraseKey", &MainWindow::EraseKeyOnRequest);
    OnButton("cmdDontSpecifyKeyNow", &MainWindow::CloseKeyFrame);
}

void MainWindow::ConnectRandomnessPane() {
    OnButton("cmdRandomnessFile(0)", &MainWindow::CheckInputRandomness);
    OnButton("cmdRandomnessFile(1)", &MainWindow::CheckOutputRandomness);
    OnButton("cmdDisplayGraphic", &MainWindow::DisplayGraphic);
    OnButton("cmdNoRandomnessReport", &MainWindow::CloseRandomnessReport);
    if (parts_.randomness != nullptr) parts_.randomness->SetView([this] { ShowRandomness(); });
}

void MainWindow::ConnectTextBoxes() {
    for (const char* name : {"txbFilePattern", "txbMaxNumFiles"}) {
        auto* box = &Find<QLineEdit>(name);
        box->installEventFilter(this);
        connect(box, &QLineEdit::textEdited, this, [this, box] { putBack_.remove(box); });
        connect(box, &QLineEdit::returnPressed, this,
                [this, box] { LeaveTextBox(*box, SetupDesk::Leaving::Speaking); });
    }
}

void MainWindow::ChooseInput() {
    parts_.singleFile.ChooseInput(FromQt(Find<QPushButton>("cmdSingleFile(0)").text()));
    Refresh();
}

void MainWindow::ChooseOutput() {
    parts_.singleFile.ChooseOutput(FromQt(Find<QPushButton>("cmdSingleFile(1)").text()));
    Refresh();
}

void MainWindow::ChooseFolder() {
    if (!LeaveTextBoxes()) return;
    parts_.actions.WhileOutOfUse([this](const StopAsked& stopped) {
        parts_.folder.ChooseInput(FromQt(Find<QPushButton>("cmdSpecifyDirectory").text()), stopped);
    });
    OperationEnded();
}

void MainWindow::SpecifyInputFiles() {
    if (!LeaveTextBoxes()) return;
    parts_.specifyInputFiles(*this);
    Refresh();
}

void MainWindow::SpecifyOutputFiles() {
    parts_.specifyOutputFiles(*this);
    Refresh();
}

void MainWindow::Perform() {
    if (!LeaveTextBoxes()) return;
    const bool ready = parts_.desk.ReadyToPerform();
    Refresh();
    if (!ready) return;
    parts_.actions.Perform();
    OperationEnded();
}

void MainWindow::ListFiles() {
    if (!LeaveTextBoxes()) return;
    parts_.actions.ListFiles(FromQt(Find<QPushButton>("cmdListFiles").text()));
    OperationEnded();
}

void MainWindow::ViewReport() {
    if (parts_.actions.ReportIsEmpty()) {
        parts_.user.Ask(EmptyReportBox());
    } else {
        parts_.actions.ShowReport();
    }
}

void MainWindow::ShowHelp() {
    auto* help = findChild<QDialog*>("frmHelp");
    if (help == nullptr) help = new HelpWindow(this);
    help->show();
    help->raise();
    help->activateWindow();
}

void MainWindow::OpenManual() {
    parts_.program.OpenManual();
}

void MainWindow::OpenMakerSite() {
    parts_.program.OpenMakerSite();
}

void MainWindow::Quit() {
    close();
}

void MainWindow::OpenRandomnessReport() {
    parts_.randomness->Open();
    OperationEnded();
}

void MainWindow::CheckInputRandomness() {
    parts_.randomness->Check(Input);
    OperationEnded();
}

void MainWindow::CheckOutputRandomness() {
    parts_.randomness->Check(Output);
    OperationEnded();
}

void MainWindow::CloseRandomnessReport() {
    parts_.randomness->Close();
}

void MainWindow::DisplayGraphic() {
    parts_.showGraphic(*this, parts_.randomness->Shown().path);
}

void MainWindow::ShowRandomness() {
    Refresh();
    Find<RandomnessPane>("fraRandomnessFiles").Show(*parts_.randomness);
    if (parts_.randomness->state() == RandomnessReport::State::Closed)
        Find<QPushButton>("cmdRandomnessReport").setFocus();
}

void MainWindow::OpenKeyFrame() {
    keyFrame_.Open(parts_.key, keyLabels_);
    parts_.desk.Show(Pane::Key);
    Refresh();
    Find<QPushButton>("cmdKeyboardWithDisplay").setFocus();
}

void MainWindow::TypeKeyWithDisplay() {
    parts_.typeKeyWithDisplay(*this);
    KeyChosen();
}

void MainWindow::TypeKeyWithoutDisplay() {
    parts_.typeKeyWithoutDisplay(*this);
    KeyChosen();
}

void MainWindow::GetKeyFromKeyfile() {
    parts_.getKeyFromKeyfile(*this, KeyfileMode::Existing);
    KeyChosen();
}

void MainWindow::CreateKeyfile() {
    parts_.getKeyFromKeyfile(*this, KeyfileMode::Create);
    KeyChosen();
}

void MainWindow::KeyChosen() {
    RefreshKeyLabels();
    CloseKeyFrame();
}

void MainWindow::EraseKeyOnRequest() {
    EraseKeyAndTell(parts_.key, parts_.engine, parts_.user);
    KeyChosen();
}

void MainWindow::CloseKeyFrame() {
    const KeyFrame::FocusAfter focus = keyFrame_.Close(parts_.key);
    parts_.desk.Show(Pane::Menu);
    Refresh();
    const bool toKey = focus == KeyFrame::FocusAfter::KeyFrom;
    Find<QPushButton>(toKey ? "cmdKeyFrom" : "cmdDoIt").setFocus();
}

void MainWindow::RefreshKeyLabels() {
    keyLabels_ = UpdateKeyLabels(parts_.key, keyLabels_, keyFrame_.SavedLabels(), parts_.user);
    Find<QLabel>("lblKeyFrom(0)").setText(ToQt(keyLabels_[0]));
    Find<QLabel>("lblKeyFrom(1)").setText(ToQt(keyLabels_[1]));
    ApplyPalette();
}

void MainWindow::OpenSetup() {
    if (!LeaveTextBoxes()) return;
    parts_.desk.Show(Pane::Setup);
    Refresh();
    Find<QPushButton>("cmdKeepSetup").setFocus();
}

void MainWindow::OpenSaveSetup() {
    parts_.desk.Show(Pane::SaveSetup);
    Refresh();
    Find<QPushButton>("cmdDontSaveSetup").setFocus();
}

void MainWindow::LoadSetup() {
    parts_.desk.Show(Pane::Waiting);
    Refresh();
    parts_.setupStore->LoadOperationFile([this] { NoteDialogClosed(); }, [this] { Refresh(); });
    CloseSetup();
}

void MainWindow::SaveSetupForNextRun() {
    parts_.setupStore->SaveForNextRun();
    CloseSetup();
}

void MainWindow::SaveSetupAsOperationFile() {
    parts_.setupStore->SaveAsOperationFile([this] { NoteDialogClosed(); });
    CloseSetup();
}

void MainWindow::CloseSetup() {
    parts_.desk.Show(Pane::Menu);
    Refresh();
    Find<QPushButton>("cmdSetup").setFocus();
}

void MainWindow::ClearSetup() {
    parts_.desk.ResetSetup();
    EraseKey(parts_.key, parts_.engine);
    RefreshKeyLabels();
    CloseSetup();
}

} // namespace zr5
