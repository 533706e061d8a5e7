#pragma once

// What stands behind the main window's operation buttons: checks, confirmation, report screen.

#include "operation/operation_context.h"
#include "operation/report_screen.h"
#include "setup/setup_desk.h"
#include "ui/main_window_actions.h"
#include "ui/report_window.h"

#include <functional>
#include <memory>

namespace zr5 {

class OperationDesk final : public MainWindowActions {
  public:
    /// All of it outlives the desk.
    OperationDesk(SetupDesk& setup, const CurrentKey& key, Machine& machine);

    /// The window over which dialogs open, and what it wants to know when a run has ended.
    void SetMainWindow(QWidget* mainWindow, std::function<void()> operationEnded);

    void Perform() override;
    void ListFiles() override {}
    [[nodiscard]] bool ReportIsEmpty() override { return screen_.IsEmpty(); }
    void ShowReport() override;
    void RequestStop() override { screen_.StopPressed(); }

  private:
    ReportWindow& Window();

    SetupDesk& setup_;
    const CurrentKey& key_;
    Machine& machine_;
    ReportScreen screen_;
    std::unique_ptr<ReportWindow> window_; ///< made at its first use
    QWidget* mainWindow_ = nullptr;
    std::function<void()> operationEnded_;
};

} // namespace zr5
