#pragma once

// `frmReport`: shows the report screen. Holds no rule.

#include "operation/report/report_screen.h"

#include <functional>
#include <QDialog>
#include <QTimer>
#include <string>
#include <string_view>

class QLabel;
class QLayout;
class QProgressBar;
class QPushButton;

namespace zr5 {

class OutcomeStrip;
class ReportTextBox;

class ReportWindow : public QDialog, public ReportView {
  public:
    /// `screen` outlives the window. `save` saves the report and says whether it did.
    ReportWindow(ReportScreen& screen, std::function<bool()> save, QWidget* parent = nullptr);
    ~ReportWindow() override;

    /// Opens the window, or brings it to the front, with the end of the text in view.
    void ShowAtEnd();
    /// Lays the window over the others, unless the user has put it away.
    void ComeToFront();

    void TextReplaced() override;
    void TextAppended(std::string_view text) override;
    void TextRemoved(std::string_view text) override;
    void StateChanged() override;
    void ShowPurgeWarning(PurgeWarning& warning, const std::string& path) override;

  protected:
    void closeEvent(QCloseEvent* event) override;
    /// Enter presses the button that has the focus, and none without: no button is the default.
    void keyPressEvent(QKeyEvent* event) override;
    void reject() override;

  private:
    void LayOut();
    QLayout* OutcomeRow();
    QLayout* StatusRow();
    QLayout* ButtonRow();
    void Connect();
    void SetUpClocks();
    void ShowSelection();
    void ShowTime();
    void ShowProgress();
    void ShowOutcome();
    void ShowNextProblem();
    /// A word for a moment.
    void Say(const QString& word);
    void NameFile();
    void NameWhole();

    ReportScreen& screen_;
    std::function<bool()> save_;
    OutcomeStrip* outcome_;
    QPushButton* nextProblem_;
    ReportTextBox* text_;
    QLabel* pausedDone_;
    QLabel* time_;
    QLabel* file_;
    QProgressBar* progress_;
    QLabel* whole_;
    QProgressBar* wholeProgress_;
    QPushButton* stop_;
    QPushButton* pauseContinue_;
    QLabel* said_;
    QPushButton* saveReport_;
    QPushButton* randomness_;
    QPushButton* copy_;
    QTimer clock_;
    QTimer flushTimer_;
    QTimer saidTimer_;
    bool wasRunning_ = false;
};

} // namespace zr5
