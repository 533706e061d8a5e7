#include "ui/report_window.h"

#include "ui/notices.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"

#include <algorithm>
#include <initializer_list>
#include <QApplication>
#include <QCloseEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextCursor>

namespace zr5 {
namespace {

constexpr int FlushIntervalMs = 50;
constexpr int ClockIntervalMs = 1000;
constexpr int FileBarWidth = 180;

QPlainTextEdit* MakeText(QWidget* parent) {
    auto* text = Named(new QPlainTextEdit(parent), "txbText");
    text->setReadOnly(true);
    text->setUndoRedoEnabled(false);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text->document()->setDocumentMargin(FrameMargin);
    return text;
}

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

ReportWindow::ReportWindow(ReportScreen& screen, QWidget* parent)
    : QDialog(parent),
      screen_(screen),
      text_(MakeText(this)),
      pausedDone_(MakeLabel("lblPausedDone", {}, this)),
      time_(MakeLabel("lblTime", {}, this)),
      file_(MakeLabel("lblFile", {}, this)),
      progress_(MakeProgressBar("prgFile", this)),
      whole_(MakeLabel("lblOperation", {}, this)),
      wholeProgress_(MakeProgressBar("prgOperation", this)),
      stop_(MakeChangingButton("cmdStop", {"Stop at next file", "Stop"}, this)),
      pauseContinue_(
          MakeChangingButton("cmdPauseContinue", {"Pause at next file", "Continue"}, this)),
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
    column->addWidget(text_, 1);
    column->addLayout(operation);
    column->addLayout(status);
    column->addLayout(buttons);
    resize(820, 560);
    setMinimumSize(560, 320);
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
    row->addWidget(copy_);
    row->addWidget(close);
    return row;
}

void ReportWindow::Connect() {
    connect(stop_, &QPushButton::clicked, this, [this] { screen_.StopPressed(); });
    connect(pauseContinue_, &QPushButton::clicked, this,
            [this] { screen_.PauseContinuePressed(); });
    connect(copy_, &QPushButton::clicked, this, [this] {
        QString selected = text_->textCursor().selectedText();
        selected.replace(QChar(QChar::ParagraphSeparator), QLatin1Char('\n'));
        screen_.CopyPressed(FromQt(selected));
    });
    connect(text_, &QPlainTextEdit::selectionChanged, this, [this] { ShowSelection(); });
}

void ReportWindow::SetUpClocks() {
    clock_.setObjectName(QStringLiteral("Clock"));
    clock_.setParent(this);
    clock_.setInterval(ClockIntervalMs);
    connect(&clock_, &QTimer::timeout, this, [this] { ShowTime(); });
    flushTimer_.setSingleShot(true);
    flushTimer_.setInterval(FlushIntervalMs);
    connect(&flushTimer_, &QTimer::timeout, this, [this] {
        FlushText();
        ShowProgress();
    });
}

ReportWindow::~ReportWindow() {
    screen_.SetView(nullptr);
    clock_.setParent(nullptr); // it is a member
}

void ReportWindow::ShowAtEnd() {
    FlushText();
    show();
    raise();
    activateWindow();
    text_->moveCursor(QTextCursor::End);
    ScrollToEnd();
}

void ReportWindow::ComeToFront() {
    if (!isVisible() || isMinimized()) return;
    raise();
    if (QApplication::activeModalWidget() == nullptr) activateWindow();
}

void ReportWindow::TextReplaced() {
    waiting_.clear();
    text_->setPlainText(ToQt(screen_.text()));
    text_->moveCursor(QTextCursor::End);
}

void ReportWindow::TextAppended(std::string_view text) {
    waiting_ += text;
    if (!flushTimer_.isActive()) flushTimer_.start();
}

void ReportWindow::TextRemoved(std::string_view text) {
    if (waiting_.ends_with(text)) {
        waiting_.resize(waiting_.size() - text.size());
        return;
    }
    FlushText();
    QTextCursor cursor(text_->document());
    cursor.movePosition(QTextCursor::End);
    cursor.movePosition(QTextCursor::PreviousCharacter, QTextCursor::KeepAnchor,
                        static_cast<int>(ToQt(text).size()));
    cursor.removeSelectedText();
}

void ReportWindow::FlushText() {
    if (waiting_.empty()) return;
    QTextCursor cursor(text_->document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(ToQt(waiting_));
    waiting_.clear();
    // What the user is selecting stays in view and selected.
    if (!text_->textCursor().hasSelection()) {
        text_->moveCursor(QTextCursor::End);
        ScrollToEnd();
    }
}

void ReportWindow::ScrollToEnd() {
    text_->verticalScrollBar()->setValue(text_->verticalScrollBar()->maximum());
    text_->horizontalScrollBar()->setValue(0);
}

void ReportWindow::StateChanged() {
    stop_->setText(ToQt(screen_.StopCaption()));
    stop_->setEnabled(screen_.StopEnabled());
    pauseContinue_->setText(ToQt(screen_.PauseCaption()));
    pauseContinue_->setEnabled(screen_.PauseEnabled());
    pausedDone_->setText(ToQt(screen_.PausedDoneText()));
    setWindowTitle(ToQt(screen_.Caption()));
    if (screen_.IsRunning()) {
        // Small files come by the thousand: progress is drawn as often as text.
        if (!flushTimer_.isActive()) flushTimer_.start();
        if (!clock_.isActive()) {
            clock_.start();
            ShowTime();
        }
        if (screen_.state() == ReportScreen::State::Paused) FlushText();
        return;
    }
    clock_.stop();
    ShowProgress();
    FlushText();
    ShowTime();
    if (screen_.ClosesNow()) reject();
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
    FlushText();
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
    QDialog::keyPressEvent(event);
}

/// Every way of closing comes here: the button, Escape and the window's frame.
void ReportWindow::reject() {
    if (screen_.MayClose()) QDialog::reject();
}

} // namespace zr5
