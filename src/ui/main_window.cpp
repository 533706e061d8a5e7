#include "ui/main_window.h"

#include "setup/identity.h"
#include "ui/appearance.h"
#include "ui/outcome_strip.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"

#include <algorithm>
#include <QApplication>
#include <QButtonGroup>
#include <QCloseEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QRadioButton>
#include <QScreen>

namespace zr5 {
namespace {

constexpr int ClockIntervalMs = 1000;
/// Takes a long path without shortening it further.
constexpr QSize ComfortableSize(980, 660);

constexpr const char* MouseButtons[] = {
    // of the menu
    "cmdKeyFrom", "cmdDoIt", "cmdCheckFiles", "cmdRandomnessReport", "cmdReportScreen", "cmdSetup",
    "cmdHelp(0)", "cmdHelp(1)", "cmdQuit",
    // of the files
    "cmdSingleFile(0)", "cmdSingleFile(1)", "cmdSpecifyDirectory", "cmdListFiles",
    "cmdSpecifyFiles(0)", "cmdSpecifyFiles(1)"};

constexpr const char* TextBoxes[] = {"txbFilePattern", "txbMaxNumFiles"};

constexpr const char* SoftLabels[] = {
    "lblIntro",     "lblFunction",     "lblInput",      "lblOutput",        "lblInputFolder",
    "lblInputFile", "lblOutputFolder", "lblOutputFile", "lblSetupFilename", "lblSize"};

void ApplyToOption(QRadioButton& option, const ControlView& view) {
    option.group()->setExclusive(false); // neither of a pair may be selected
    option.setChecked(view.checked);
    option.group()->setExclusive(true);
    SetBold(option, view.bold);
}

void ApplyControl(QWidget& widget, const ControlView& view) {
    widget.setEnabled(view.enabled);
    widget.setVisible(view.visible);
    widget.setToolTip(ToQt(view.toolTip));
    if (auto* option = qobject_cast<QRadioButton*>(&widget)) ApplyToOption(*option, view);
    auto* label = qobject_cast<QLabel*>(&widget);
    if (label != nullptr) SetBold(*label, view.bold);
    if (!view.text) return;
    const QString text = ToQt(*view.text);
    if (label != nullptr && label->text() != text) label->setText(text);
    if (auto* button = qobject_cast<QAbstractButton*>(&widget)) button->setText(text);
    auto* box = qobject_cast<QLineEdit*>(&widget);
    // A half-typed value stays, also while the window is not the active one.
    const bool mayShow = box != nullptr && !box->isModified() && !box->hasFocus();
    if (mayShow && box->text() != text) box->setText(text);
}

/// Reports and help that are still open go with the main window.
void CloseOtherWindows(const QWidget& mainWindow) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window != &mainWindow && window->isVisible()) window->close();
    }
}

} // namespace

MainWindow::MainWindow(const MainWindowParts& parts)
    : parts_(parts),
      dialogs_(parts.operations, parts.machine.user, *this, [this] { OperationEnded(); }) {
    setObjectName("frmMain");
    setWindowTitle(ProductName);
    LayOut();
    SetUpClocks();
    ConnectOptions();
    ConnectFiles();
    ConnectMenu();
    ConnectSetupPanes();
    ConnectKeyPane();
    ConnectRandomnessPane();
    ConnectTextBoxes();
    for (auto* widget : findChildren<QWidget*>())
        widget->installEventFilter(this);
    for (const char* name : MouseButtons)
        Find<ReleaseButton>(name).SetGuard([this] { return parts_.desk.DialogJustClosed(); });
    Apply(parts_.desk.Refresh());
    Settle();
    ApplyPalette();
    RefreshKeyLabels();
    ShowOutcome();
}

void MainWindow::SetUpClocks() {
    deafClock_.setObjectName("Clock2");
    refreshClock_.setObjectName("Clock3");
    for (QTimer* clock : {&deafClock_, &refreshClock_}) {
        clock->setParent(this);
        clock->setInterval(ClockIntervalMs);
    }
    connect(&deafClock_, &QTimer::timeout, this, [this] {
        parts_.desk.SetDialogJustClosed(false);
        deafClock_.stop();
    });
    connect(&refreshClock_, &QTimer::timeout, this, [this] { Refresh(); });
    deafClock_.start();
}

void MainWindow::Refresh() {
    if (parts_.desk.OperationRunning()) return;
    Apply(parts_.desk.Refresh());
}

void MainWindow::Apply(MainWindowView view) {
    view["cmdKeyFile(1)"].visible = OffersNewKeyfile(parts_.desk.Setup().Operation);
    for (const auto& [name, control] : view) {
        if (QWidget* widget = controls_.value(QString::fromStdString(name)))
            ApplyControl(*widget, control);
    }
}

std::string MainWindow::Caption(const char* button) const {
    return FromQt(Find<QPushButton>(button).text());
}

void MainWindow::StartClock() {
    refreshClock_.start();
}

void MainWindow::FitToScreen() {
    const QRect room = screen()->availableGeometry();
    resize(sizeHint().expandedTo(ComfortableSize).boundedTo(room.size()));
    move(room.center() - rect().center());
}

void MainWindow::NoteDialogClosed() {
    parts_.desk.SetDialogJustClosed(true);
    deafClock_.start();
}

void MainWindow::ShowOutcome() {
    const RunOutcome& outcome = parts_.operations.Screen().Outcome();
    auto& strip = Find<OutcomeStrip>("fraOutcome");
    strip.setVisible(outcome.HasBegun());
    strip.ShowOutcome(outcome);
}

void MainWindow::OperationEnded() {
    Refresh();
    ShowOutcome();
    if (!closeAfterRun_ || parts_.desk.OperationRunning()) return;
    closeAfterRun_ = false;
    close();
}

void MainWindow::ApplyPalette() {
    for (const char* name : SoftLabels)
        Soften(Find<QLabel>(name), palette());
    // What is going on stays readable while the window is out of use.
    QPalette readable;
    readable.setBrush(QPalette::Disabled, QPalette::WindowText,
                      palette().brush(QPalette::Active, QPalette::WindowText));
    Find<QLabel>("lblPerformingReliabilityTest").setPalette(readable);
    Find<QLabel>("picKeyFrom")
        .setPixmap(KeyPicture(palette(), parts_.key.IsHeld(), devicePixelRatioF()));
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (parts_.desk.OperationRunning()) {
        closeAfterRun_ = true;
        parts_.operations.RequestStop();
        event->ignore();
        return;
    }
    if (parts_.randomness.state() == RandomnessReport::State::Checking) {
        closeAfterRun_ = true;
        parts_.randomness.Close();
        event->ignore();
        return;
    }
    event->setAccepted(parts_.quit(Caption("cmdQuit")));
    if (event->isAccepted()) CloseOtherWindows(*this);
}

void MainWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !controls_.isEmpty()) ApplyPalette();
}

void MainWindow::ConnectTextBoxes() {
    for (const char* name : TextBoxes) {
        auto* box = &Find<QLineEdit>(name);
        connect(box, &QLineEdit::returnPressed, this, [this, box] { LeaveTextBox(*box); });
    }
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Enter) {
        if (auto* button = qobject_cast<QPushButton*>(watched)) HoverOver(*button);
    }
    if (event->type() == QEvent::FocusOut) {
        if (qobject_cast<QLineEdit*>(watched) != nullptr)
            FocusLeft(static_cast<QFocusEvent*>(event)->reason());
    }
    if (event->type() == QEvent::MouseButtonRelease) LeaveTextBoxesSoon();
    return QWidget::eventFilter(watched, event);
}

/// Whoever types is not to be led away by the pointer.
void MainWindow::HoverOver(QPushButton& button) {
    const auto* box = qobject_cast<QLineEdit*>(focusWidget());
    const bool isTyping = box != nullptr && box->text() != ValueInForce(*box);
    if (button.isEnabled() && isActiveWindow() && !isTyping) button.setFocus(Qt::OtherFocusReason);
}

/// A box that the refusal shows must not come between the press of a mouse button and its release:
/// the control under it would never act.
void MainWindow::FocusLeft(Qt::FocusReason reason) {
    const bool stays = reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
    if (!stays && reason != Qt::MouseFocusReason) LeaveTextBoxesSoon();
}

void MainWindow::LeaveTextBoxesSoon() {
    const auto leave = [this] {
        for (const char* name : TextBoxes)
            if (auto& box = Find<QLineEdit>(name); &box != focusWidget()) LeaveTextBox(box);
    };
    QMetaObject::invokeMethod(this, leave, Qt::QueuedConnection);
}

QString MainWindow::ValueInForce(const QLineEdit& box) const {
    const OperationSetup& setup = parts_.desk.Setup();
    return &box == &Find<QLineEdit>("txbFilePattern") ? ToQt(setup.FilePattern)
                                                      : QString::number(setup.MaxNumFiles);
}

/// The box shows the value in force afterwards, whether or not its text was accepted; and already
/// while a refusal shows, so that it is told once.
bool MainWindow::LeaveTextBox(QLineEdit& box) {
    if (!box.isEnabled() || box.text() == ValueInForce(box)) return true;
    const std::string text = FromQt(box.text());
    box.setText(ValueInForce(box));
    SetupDesk& desk = parts_.desk;
    const bool accepted = &box == &Find<QLineEdit>("txbFilePattern") ? desk.LeaveFilePattern(text)
                                                                     : desk.LeaveMaxNumFiles(text);
    box.setText(ValueInForce(box));
    Refresh();
    return accepted;
}

bool MainWindow::LeaveTextBoxes() {
    return std::ranges::all_of(TextBoxes,
                               [this](auto* name) { return LeaveTextBox(Find<QLineEdit>(name)); });
}

} // namespace zr5
