#pragma once

// `frmMain`: shows what the desk derives and passes on what the user does.

#include "files/file_choice.h"
#include "keys/current_key.h"
#include "keys/key_frame.h"
#include "keys/keyfile_choice.h"
#include "operation/measure/randomness_report.h"
#include "operation/operations.h"
#include "setup/setup_desk.h"
#include "setup/setup_store.h"
#include "ui/operation_dialogs.h"
#include "ui/widgets.h"
#include "util/machine.h"

#include <functional>
#include <QHash>
#include <QTimer>
#include <QWidget>
#include <string>

class QLineEdit;
class QPushButton;

namespace zr5 {

/// What the window works with; all of it outlives the window.
struct MainWindowParts {
    Machine& machine;
    SetupDesk& desk;
    SetupStore& setups;
    CurrentKey& key;
    Operations& operations;
    RandomnessReport& randomness;
    std::function<void()> openManual;
    /// The steps of quitting; false when the user wants to stay. Boxes have `caption` as their
    /// title.
    std::function<bool(const std::string& caption)> quit;
};

class MainWindow : public QWidget {
  public:
    explicit MainWindow(const MainWindowParts& parts);

    /// Shows what the desk says now. Does nothing while an operation runs.
    void Refresh();
    /// Starts the refresh of every second.
    void StartClock();
    /// Sizes the window within its screen and places it in the middle.
    void FitToScreen();
    /// Writes the two key lines anew from the key.
    void RefreshKeyLabels();
    /// Called when a run has ended: closes the window if that was asked for meanwhile.
    void OperationEnded();
    /// A file picker of the setup buttons has closed: for a second the mouse buttons are deaf.
    void NoteDialogClosed();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    // main_window_layout.cpp: makes the controls under their names and lays them out. Captions
    // come with the first refresh, and with them the room that they need.
    void LayOut();
    void Settle();

    // main_window_handlers.cpp: what each control leads to.
    // A refused text is put back and told first; `Unless` then does nothing, to be asked again.
    void OnButton(const char* name, std::function<void()> act);
    void OnButtonUnlessRefused(const char* name, std::function<void()> act);
    void ConnectOptions();
    void ConnectFiles();
    [[nodiscard]] SingleFileChoice FileChoice();
    void ConnectMenu();
    void ConnectSetupPanes();
    void ConnectKeyPane();
    void ConnectRandomnessPane();
    void ChooseFolder();
    void UseKeyfile(KeyfileMode mode);
    void StartOperation(bool isReady, void (Operations::*run)());
    void ShowPane(Pane pane, const char* focusAfter);
    void CloseKeyPane();
    void ShowRandomness();
    void ShowGraphic();

    // main_window.cpp: what it shows, and how boxes are left.
    void SetUpClocks();
    void Apply(MainWindowView view);
    void ApplyPalette();
    void ShowOutcome();
    void ConnectTextBoxes();
    [[nodiscard]] QString ValueInForce(const QLineEdit& box) const;
    bool LeaveTextBox(QLineEdit& box);
    bool LeaveTextBoxes();
    void LeaveTextBoxesSoon();
    void HoverOver(QPushButton& button);
    void FocusLeft(Qt::FocusReason reason);

    /// The control of this name; there is one.
    template <typename Widget>
    [[nodiscard]] Widget& Find(const char* name) const {
        return Checked<Widget>(controls_.value(QString::fromLatin1(name)), name);
    }
    [[nodiscard]] std::string Caption(const char* button) const;

    MainWindowParts parts_;
    OperationDialogs dialogs_;
    OneButtonClicks oneButtonClicks_;
    QHash<QString, QWidget*> controls_; ///< by object name
    QTimer deafClock_;                  ///< ends the second in which the mouse buttons are deaf
    QTimer refreshClock_;               ///< of every second
    KeyFrame keyFrame_;
    KeyLabels keyLabels_ = NoKeyLabels();
    bool closeAfterRun_ = false;
};

} // namespace zr5
