#include "ui/report_window.h"

#include "ui/find_bar.h"
#include "ui/notices.h"
#include "ui/outcome_strip.h"
#include "ui/report_text_box.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"

#include <algorithm>
#include <initializer_list>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>

namespace zr5 {
namespace {

constexpr int FlushIntervalMs = 50;
constexpr int ClockIntervalMs = 1000;
constexpr int FileBarWidth = 180;
constexpr int SaidForMs = 2500;

/// As wide as the widest of its captions, so that nothing moves when the caption changes.
QPushButton* MakeChangingButton(const char* name, std::initializer_list<std::string> captions,
                                QWidget* parent) {
    QPushButton* button = MakeButton(name, {}, parent);
    button->setAutoDefault(false);
    int width = 0;
    for (const std::string& caption : captions) {
        button->setText(ToQt(caption));
        width = std::max(width, button->sizeHint().width());
    }
    button->setMinimumWidth(width + 2 * FrameMargin);
    return button;
}

} // namespace

ReportWindow::ReportWindow(ReportScreen& screen, std::function<bool()> save, QWidget* parent)
    : QDialog(parent),
      screen_(screen),
      save_(std::move(save)),
      outcome_(new OutcomeStrip(OutcomeStrip::Wrapping::OneLine, this)),
      nextProblem_(MakeChangingButton("cmdNextProblem", {"Next problem"}, this)),
      text_(new ReportTextBox(this)),
      pausedDone_(MakeLabel("lblPausedDone", {}, this)),
      time_(MakeLabel("lblTime", {}, this)),
      file_(MakeLabel("lblFile", {}, this)),
      progress_(MakeProgressBar("prgFile", this)),
      whole_(MakeLabel("lblOperation", {}, this)),
      wholeProgress_(MakeProgressBar("prgOperation", this)),
      stop_(MakeChangingButton("cmdStop", {"Stop at next file", "Stop"}, this)),
      pauseContinue_(
          MakeChangingButton("cmdPauseContinue", {"Pause at next file", "Continue"}, this)),
      said_(MakeLabel("lblSaid", {}, this)),
      saveReport_(MakeChangingButton("cmdSaveReport", {"Save report"}, this)),
      randomness_(MakeChangingButton("cmdRandomnessOfFiles", {"Randomness report"}, this)),
      copy_(MakeChangingButton("cmdCopyToClipboard",
                               {ReportScreen::CopyCaption(true), ReportScreen::CopyCaption(false)},
                               this)) {
    setObjectName(QStringLiteral("frmReport"));
    setWindowTitle(QStringLiteral("Report"));
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    setSizeGripEnabled(true);
    LayOut();
    Connect();
    SetUpClocks();
    screen_.SetView(this);
    ShowSelection();
}

void ReportWindow::LayOut() {
    QLayout* buttons = ButtonRow();
    QLayout* status = StatusRow();
    auto* operation = MakeRow(GroupSpacing);
    operation->addWidget(wholeProgress_, 1);
    operation->addWidget(whole_);
    auto* column = MakeColumn(*this);
    column->addLayout(OutcomeRow());
    column->addWidget(text_, 1);
    column->addWidget(new FindBar(*text_, this));
    column->addLayout(operation);
    column->addLayout(status);
    column->addLayout(buttons);
    resize(820, 560);
    setMinimumSize(560, 320);
}

QLayout* ReportWindow::OutcomeRow() {
    auto* row = MakeRow(RowSpacing);
    row->addWidget(outcome_, 1);
    row->addWidget(nextProblem_);
    return row;
}

QLayout* ReportWindow::StatusRow() {
    SetBold(*pausedDone_, true);
    progress_->setFixedWidth(FileBarWidth);
    auto* row = MakeRow(GroupSpacing);
    row->addWidget(pausedDone_);
    row->addWidget(time_);
    row->addStretch(1);
    row->addWidget(file_);
    row->addWidget(progress_);
    row->addWidget(randomness_);
    return row;
}

QLayout* ReportWindow::ButtonRow() {
    auto* close = MakeButton("cmdClose", "Close", this);
    close->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    auto* row = MakeRow(RowSpacing);
    row->addWidget(pauseContinue_);
    row->addWidget(stop_);
    row->addStretch(1);
    row->addWidget(said_);
    row->addWidget(saveReport_);
    row->addWidget(copy_);
    row->addWidget(close);
    return row;
}

void ReportWindow::Connect() {
    connect(stop_, &QPushButton::clicked, this, [this] { screen_.StopPressed(); });
    connect(pauseContinue_, &QPushButton::clicked, this,
            [this] { screen_.PauseContinuePressed(); });
    connect(randomness_, &QPushButton::clicked, this, [this] { screen_.RandomnessPressed(); });
    connect(copy_, &QPushButton::clicked, this, [this] {
        screen_.CopyPressed(text_->Selected());
        Say(QStringLiteral("Copied"));
    });
    connect(saveReport_, &QPushButton::clicked, this, [this] {
        if (save_()) Say(QStringLiteral("Saved"));
    });
    connect(nextProblem_, &QPushButton::clicked, this, [this] { ShowNextProblem(); });
    connect(text_, &QPlainTextEdit::selectionChanged, this, [this] { ShowSelection(); });
}

void ReportWindow::SetUpClocks() {
    clock_.setObjectName(QStringLiteral("Clock"));
    clock_.setParent(this);
    clock_.setInterval(ClockIntervalMs);
    connect(&clock_, &QTimer::timeout, this, [this] { ShowTime(); });
    saidTimer_.setSingleShot(true);
    saidTimer_.setInterval(SaidForMs);
    connect(&saidTimer_, &QTimer::timeout, said_, &QLabel::clear);
    flushTimer_.setSingleShot(true);
    flushTimer_.setInterval(FlushIntervalMs);
    connect(&flushTimer_, &QTimer::timeout, this, [this] {
        text_->Flush(screen_.Problems());
        ShowOutcome();
        ShowProgress();
    });
}

ReportWindow::~ReportWindow() {
    screen_.SetView(nullptr);
    clock_.setParent(nullptr); // it is a member
}

void ReportWindow::ShowAtEnd() {
    text_->Flush(screen_.Problems());
    show();
    raise();
    activateWindow();
    text_->moveCursor(QTextCursor::End);
    text_->ScrollToEnd();
}

void ReportWindow::ComeToFront() {
    if (!isVisible() || isMinimized()) return;
    raise();
    if (QApplication::activeModalWidget() == nullptr) activateWindow();
}

void ReportWindow::TextReplaced() {
    text_->Replace(screen_.text(), screen_.Problems());
}

void ReportWindow::TextAppended(std::string_view text) {
    text_->Append(text);
    if (!flushTimer_.isActive()) flushTimer_.start();
}

void ReportWindow::TextRemoved(std::string_view text) {
    text_->Remove(text);
}

void ReportWindow::StateChanged() {
    stop_->setText(ToQt(screen_.StopCaption()));
    stop_->setEnabled(screen_.StopEnabled());
    pauseContinue_->setText(ToQt(screen_.PauseCaption()));
    pauseContinue_->setEnabled(screen_.PauseEnabled());
    randomness_->setVisible(screen_.OffersRandomness());
    pausedDone_->setText(ToQt(screen_.PausedDoneText()));
    saveReport_->setEnabled(screen_.MaySave());
    setWindowTitle(ToQt(screen_.Caption()));
    const bool hasEnded = wasRunning_ && !screen_.IsRunning();
    wasRunning_ = screen_.IsRunning();
    if (screen_.IsRunning()) {
        // Small files come by the thousand: progress is drawn as often as text.
        if (!flushTimer_.isActive()) flushTimer_.start();
        if (!clock_.isActive()) {
            clock_.start();
            ShowTime();
        }
        if (screen_.state() == ReportScreen::State::Paused) text_->Flush(screen_.Problems());
        return;
    }
    clock_.stop();
    ShowProgress();
    text_->Flush(screen_.Problems());
    ShowOutcome();
    ShowTime();
    if (hasEnded) QApplication::alert(this);
    if (screen_.ClosesNow()) reject();
}

void ReportWindow::ShowOutcome() {
    outcome_->setVisible(screen_.ShowsOutcome());
    nextProblem_->setVisible(screen_.ShowsOutcome());
    nextProblem_->setEnabled(!screen_.Problems().empty());
    outcome_->ShowOutcome(screen_.Outcome());
}

void ReportWindow::Say(const QString& word) {
    said_->setText(word);
    saidTimer_.start();
}

void ReportWindow::ShowNextProblem() {
    const ReportEntry* entry =
        screen_.NextProblem(static_cast<std::size_t>(text_->textCursor().blockNumber()));
    if (entry == nullptr) return;
    text_->Flush(screen_.Problems());
    text_->ShowEntry(*entry);
}

void ReportWindow::ShowProgress() {
    NameFile();
    NameWhole();
    // A bar is drawn at once, and what stands beside it with it: in its new place by then.
    layout()->activate();
    const OperationProgress& progress = screen_.Progress();
    progress_->setValue(static_cast<int>(progress.file.Fraction() * ProgressSteps));
    wholeProgress_->setValue(static_cast<int>(progress.Fraction() * ProgressSteps));
}

void ReportWindow::NameFile() {
    const FileProgress& file = screen_.Progress().file;
    const bool isShown = !file.name.empty() && file.lengthBytes > 0;
    progress_->setVisible(isShown);
    file_->setVisible(isShown);
    if (!isShown) return;
    file_->setText(QStringLiteral("%1: %2 %")
                       .arg(fontMetrics().elidedText(ToQt(file.name), Qt::ElideMiddle, 220))
                       .arg(static_cast<int>(file.Fraction() * 100)));
}

void ReportWindow::NameWhole() {
    const bool isShown = screen_.Progress().files > 1;
    whole_->setVisible(isShown);
    wholeProgress_->setVisible(isShown);
    whole_->setText(isShown ? ToQt(screen_.ProgressText()) : QString());
    // Never narrower while an operation runs, so that the bar keeps its length.
    const int width = whole_->sizeHint().width();
    whole_->setMinimumWidth(isShown ? std::max(whole_->minimumWidth(), width) : 0);
}

void ReportWindow::ShowTime() {
    time_->setText(ToQt(screen_.Time().Text()));
}

void ReportWindow::ShowSelection() {
    copy_->setText(ToQt(ReportScreen::CopyCaption(text_->textCursor().hasSelection())));
}

void ReportWindow::ShowPurgeWarning(PurgeWarning& warning, const std::string& path) {
    text_->Flush(screen_.Problems());
    ShowProgress();
    PurgeWarningWindow(warning, path, this).exec();
}

void ReportWindow::closeEvent(QCloseEvent* event) {
    reject();
    event->setAccepted(!isVisible());
}

void ReportWindow::keyPressEvent(QKeyEvent* event) {
    auto* button = qobject_cast<QPushButton*>(focusWidget());
    if (button != nullptr && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        button->click();
        return;
    }
    // A slip must not end a run.
    if (event->key() == Qt::Key_Escape && screen_.IsRunning()) return;
    QDialog::keyPressEvent(event);
}

/// Every way of closing comes here: the button, the window's frame, and after a run Escape.
void ReportWindow::reject() {
    if (screen_.MayClose()) QDialog::reject();
}

} // namespace zr5
