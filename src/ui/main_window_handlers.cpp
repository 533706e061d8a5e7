// What each control of the main window leads to.

#include "files/specify_files.h"
#include "operation/measure/byte_pair_picture.h"
#include "operation/report/file_saving.h"
#include "ui/graphic_window.h"
#include "ui/inspect_key_window.h"
#include "ui/key_dialogs.h"
#include "ui/main_window.h"

#include "ui/notices.h"
#include "ui/random_key_window.h"
#include "ui/randomness_pane.h"
#include "ui/specify_files_window.h"
#include "ui/text_edges.h"

#include <cstddef>
#include <QDialog>
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
    connect(&Find<QPushButton>(name), &QPushButton::clicked, this, [this, act = std::move(act)] {
        LeaveTextBoxes();
        act();
    });
}

void MainWindow::OnButtonUnlessRefused(const char* name, std::function<void()> act) {
    connect(&Find<QPushButton>(name), &QPushButton::clicked, this, [this, act = std::move(act)] {
        if (LeaveTextBoxes()) act();
    });
}

void MainWindow::ConnectOptions() {
    const auto on = [this](const char* name, void (*select)(SetupDesk&)) {
        connect(&Find<QRadioButton>(name), &QRadioButton::clicked, this, [this, select] {
            LeaveTextBoxes();
            select(parts_.desk);
            Refresh();
        });
    };
    on("optEncrypt", [](SetupDesk& desk) { desk.SelectFunction(Direction::Encrypt); });
    on("optDecrypt", [](SetupDesk& desk) { desk.SelectFunction(Direction::Decrypt); });
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

SingleFileChoice MainWindow::FileChoice() {
    return {parts_.machine.user, parts_.machine.fileSystem, parts_.desk,
            [this](const std::string& outputPath) {
                return ProtectedOutputBox(outputPath, parts_.key, parts_.machine);
            }};
}

void MainWindow::ConnectFiles() {
    OnButton("cmdSingleFile(0)", [this] {
        FileChoice().ChooseInput(Caption("cmdSingleFile(0)"));
        Refresh();
    });
    OnButton("cmdSingleFile(1)", [this] {
        FileChoice().ChooseOutput(Caption("cmdSingleFile(1)"));
        Refresh();
    });
    OnButton("cmdSpecifyDirectory", [this] { ChooseFolder(); });
    OnButton("cmdSpecifyFiles(0)", [this] {
        SpecifyInputFiles rules(parts_.machine.user, parts_.desk);
        SpecifyFilesWindow(rules, SpecifyInputNames, this).exec();
        Refresh();
    });
    OnButton("cmdSpecifyFiles(1)", [this] {
        SingleFileChoice choice = FileChoice();
        SpecifyOutputFiles rules(parts_.machine.user, parts_.machine.fileSystem, parts_.desk,
                                 choice);
        SpecifyFilesWindow(rules, SpecifyOutputNames, this).exec();
        Refresh();
    });
    OnButtonUnlessRefused("cmdListFiles",
                          [this] { parts_.operations.ListFiles(Caption("cmdListFiles")); });
}

void MainWindow::ChooseFolder() {
    parts_.operations.WhileOutOfUse([this](const StopAsked& stopped) {
        FolderChoice(parts_.machine, parts_.desk)
            .ChooseInput(Caption("cmdSpecifyDirectory"), stopped);
    });
}

void MainWindow::ConnectMenu() {
    OnButton("cmdKeyFrom", [this] {
        keyFrame_.Open(parts_.key, keyLabels_);
        ShowPane(Pane::Key, "cmdKeyboardWithDisplay");
    });
    OnButtonUnlessRefused(
        "cmdDoIt", [this] { StartOperation(parts_.desk.ReadyToPerform(), &Operations::Perform); });
    OnButtonUnlessRefused("cmdCheckFiles", [this] {
        StartOperation(parts_.desk.ReadyToCheck(), &Operations::Check);
    });
    OnButton("cmdRandomnessReport", [this] {
        parts_.randomness.Open();
        OperationEnded();
    });
    OnButton("cmdReportScreen", [this] { parts_.operations.ViewReport(); });
    OnButton("cmdSetup", [this] { ShowPane(Pane::Setup, "cmdKeepSetup"); });
    OnButton("cmdHelp(0)", [this] { parts_.openManual(); });
    OnButton("cmdHelp(1)", [this] { ShowHelp(*this); });
    OnButton("cmdQuit", [this] { close(); });
    connect(&Find<QLabel>("lblMaker"), &QLabel::linkActivated, this,
            [this] { parts_.openManual(); });
}

void MainWindow::StartOperation(bool isReady, void (Operations::*run)()) {
    Refresh();
    if (!isReady) return;
    (parts_.operations.*run)();
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
        EraseKey(parts_.key, parts_.machine.engine);
        RefreshKeyLabels();
    });
    thenMenu("cmdKeepSetup", [] {});
    thenMenu("cmdDontSaveSetup", [] {});
    thenMenu("cmdLoadSetup", [this] {
        parts_.desk.Show(Pane::Waiting);
        Refresh();
        parts_.setups.LoadOperationFile([this] { NoteDialogClosed(); }, [this] { Refresh(); });
    });
    thenMenu("cmdSaveSetupForNextRun", [this] { parts_.setups.SaveForNextRun(); });
    thenMenu("cmdSaveSetupAsOperationFile",
             [this] { parts_.setups.SaveAsOperationFile([this] { NoteDialogClosed(); }); });
}

void MainWindow::ConnectKeyPane() {
    const auto choosing = [this](const char* name, std::function<void()> choose) {
        OnButton(name, [this, choose = std::move(choose)] {
            choose();
            RefreshKeyLabels();
            CloseKeyPane();
        });
    };
    choosing("cmdKeyboardWithDisplay", [this] {
        GetKeyFromKeyboardWithDisplay(this, parts_.desk.Setup().Operation, parts_.machine,
                                      parts_.key);
    });
    choosing("cmdKeyboardWithoutDisplay", [this] {
        GetKeyFromKeyboardWithoutDisplay(this, parts_.desk.Setup().Operation, parts_.machine,
                                         parts_.key);
    });
    choosing("cmdKeyFile(0)", [this] { UseKeyfile(KeyfileMode::Existing); });
    choosing("cmdKeyFile(1)", [this] { UseKeyfile(KeyfileMode::Create); });
    choosing("cmdEraseKey",
             [this] { EraseKeyAndTell(parts_.key, parts_.machine.engine, parts_.machine.user); });
    OnButton("cmdDontSpecifyKeyNow", [this] { CloseKeyPane(); });
}

void MainWindow::UseKeyfile(KeyfileMode mode) {
    InspectInWindow inspector(this, parts_.machine);
    CollectInWindow collector(this, parts_.machine);
    GetKeyFromKeyfile(mode, parts_.desk.Setup().Operation, parts_.machine, {inspector, collector},
                      parts_.key);
}

void MainWindow::CloseKeyPane() {
    const bool toKey = keyFrame_.Close(parts_.key) == KeyFrame::FocusAfter::KeyFrom;
    ShowPane(Pane::Menu, toKey ? "cmdKeyFrom" : "cmdDoIt");
}

void MainWindow::RefreshKeyLabels() {
    keyLabels_ = UpdateKeyLabels(parts_.key, keyFrame_.SavedLabels(), parts_.machine.user,
                                 parts_.machine.engine);
    Find<QLabel>("lblKeyFrom(0)").setText(ToQt(keyLabels_[0]));
    Find<QLabel>("lblKeyFrom(1)").setText(ToQt(keyLabels_[1]));
    ApplyPalette();
}

void MainWindow::ConnectRandomnessPane() {
    const auto check = [this](const char* name, std::size_t side) {
        OnButton(name, [this, side] {
            parts_.randomness.Check(side);
            OperationEnded();
        });
    };
    check("cmdRandomnessFile(0)", InputSide);
    check("cmdRandomnessFile(1)", OutputSide);
    OnButton("cmdDisplayGraphic", [this] { ShowGraphic(); });
    OnButton("cmdNoRandomnessReport", [this] { parts_.randomness.Close(); });
    parts_.randomness.SetView([this] { ShowRandomness(); });
}

void MainWindow::ShowRandomness() {
    Refresh();
    Find<RandomnessPane>("fraRandomnessFiles").Show(parts_.randomness);
    if (parts_.randomness.state() == RandomnessReport::State::Closed)
        Find<QPushButton>("cmdRandomnessReport").setFocus();
}

void MainWindow::ShowGraphic() {
    Machine& machine = parts_.machine;
    const std::string path = parts_.randomness.Shown().path;
    BytePairPicture rules(machine.fileSystem, machine.user, machine.clock, path);
    const auto save = [&](std::span<const std::byte> png) {
        SavePicture(machine.fileSystem, machine.random, machine.user, path, png);
    };
    GraphicWindow(rules, save, this).exec();
}

} // namespace zr5
