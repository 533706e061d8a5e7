#pragma once

// What stands behind the main window's operation buttons: checks, confirmation, report screen.

#include "libs/system/random.h"
#include "operation/operation_context.h"
#include "operation/report_screen.h"
#include "setup/setup_desk.h"
#include "ui/main_window_actions.h"
#include "ui/report_window.h"

#include <memory>

namespace zr5 {

class OperationDesk final : public MainWindowActions {
  public:
    /// All of it outlives the desk.
    OperationDesk(SetupDesk& setup, const CurrentKey& key, Machine& machine, RandomSource& random);

    /// The window over which dialogs open, and which is out of use while an operation runs.
    void SetMainWindow(QWidget* mainWindow) { mainWindow_ = mainWindow; }

    void Perform() override;
    void ListFiles(const std::string& buttonCaption) override;
    [[nodiscard]] bool ReportIsEmpty() override { return screen_.IsEmpty(); }
    void ShowReport() override;
    void WhileOutOfUse(const std::function<void(const StopAsked&)>& work) override;
    void RequestStop() override;

  private:
    void RunConfirmed(const StopAsked& stopped);
    ReportWindow& Window();

    SetupDesk& setup_;
    const CurrentKey& key_;
    Machine& machine_;
    RandomSource& random_; ///< for the keys of the reliability test
    ReportScreen screen_;
    std::unique_ptr<ReportWindow> window_; ///< made at its first use
    QWidget* mainWindow_ = nullptr;
    bool stopRequested_ = false; ///< since the main window went out of use
};

} // namespace zr5
