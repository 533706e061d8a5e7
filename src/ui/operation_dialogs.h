#pragma once

// The windows of an operation, over the main window: confirmation, number of performances, report.

#include "operation/operations.h"
#include "ui/report_window.h"

#include <functional>
#include <memory>
#include <QObject>
#include <QPointer>
#include <QWidget>

namespace zr5 {

class OperationDialogs final : public QObject, public OperationWindows {
  public:
    /// `operations` shows itself through this, as long as it lives. Both outlive it. `ended` is
    /// called whenever the main window is in use again.
    OperationDialogs(Operations& operations, UserPort& user, QWidget& mainWindow,
                     std::function<void()> ended);
    ~OperationDialogs() override;

    [[nodiscard]] ConfirmationAnswer Confirm(const Confirmation& confirmation) override;
    [[nodiscard]] std::optional<int> AskForPerformances() override;
    void ShowReport() override;
    void SetOutOfUse(bool outOfUse) override;
    void OperationEnded() override { ended_(); }
    void AnnounceTest(bool runs) override;

  protected:
    /// Whoever turns to the main window while it is out of use is shown the report.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    Operations& operations_;
    UserPort& user_;
    QWidget& mainWindow_;
    std::function<void()> ended_;
    std::unique_ptr<ReportWindow> report_; ///< made at its first use
    QPointer<QWidget> focus_; ///< disabling the main window takes it away, so it is given back
    bool isOutOfUse_ = false;
};

} // namespace zr5
