#pragma once

// `frmWork`: what is being done that takes long, and how far it is.

#include "util/user_port.h"

#include <QDialog>

class QProgressBar;
class QPushButton;

namespace zr5 {

class WrappingLabel;

/// What can be stopped has a button for that; Escape and closing the window press it, and the
/// window stays before its parent. With other work it cannot be left, and keeps input from the
/// other windows.
class WorkWindow final : public QDialog {
  public:
    WorkWindow(QWidget* parent, bool canBeStopped);
    void Show(const LongWork& work);
    void reject() override;

  protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    WrappingLabel* text_;
    QProgressBar* bar_;
    QPushButton* stop_;
    std::function<void()> whatStops_;
};

} // namespace zr5
