#pragma once

// `frmReport`: shows the report screen. Holds no rule; it only gathers what is appended, so that
// ten thousand entries do not cost ten thousand repaints.

#include "operation/report/report_screen.h"

#include <QDialog>
#include <QTimer>
#include <string>
#include <string_view>

class QLabel;
class QLayout;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

namespace zr5 {

class ReportWindow : public QDialog, public ReportView {
  public:
    /// `screen` outlives the window.
    explicit ReportWindow(ReportScreen& screen, QWidget* parent = nullptr);
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
    QLayout* StatusRow();
    QLayout* ButtonRow();
    void Connect();
    void SetUpClocks();
    void FlushText();
    void ScrollToEnd();
    void ShowSelection();
    void ShowTime();
    void ShowProgress();
    void NameFile();
    void NameWhole();

    ReportScreen& screen_;
    QPlainTextEdit* text_;
    QLabel* pausedDone_;
    QLabel* time_;
    QLabel* file_;
    QProgressBar* progress_;
    QLabel* whole_;
    QProgressBar* wholeProgress_;
    QPushButton* stop_;
    QPushButton* pauseContinue_;
    QPushButton* copy_;
    QTimer clock_;
    QTimer flushTimer_;
    std::string waiting_; ///< appended, but not yet in the text box
};

} // namespace zr5
