#include "ui/operation_desk.h"

#include "operation/checks.h"
#include "operation/operation_run.h"
#include "ui/confirm_window.h"

namespace zr5 {

OperationDesk::OperationDesk(SetupDesk& setup, const CurrentKey& key, Machine& machine)
    : setup_(setup), key_(key), machine_(machine), screen_(machine.user, machine.clock) {}

void OperationDesk::Perform() {
    ConfirmInWindow confirmation(mainWindow_);
    const OperationSetup& setup = setup_.Setup();
    if (!MayStart(setup, key_, machine_, confirmation)) return;
    const WorkList list = SingleFileList(setup);
    setup_.SetOperationRunning(true);
    if (mainWindow_ != nullptr) mainWindow_->setEnabled(false);
    Window().ShowAtEnd();
    RunOperation({setup, key_, list, machine_}, screen_);
    if (mainWindow_ != nullptr) mainWindow_->setEnabled(true);
    setup_.SetOperationRunning(false);
}

void OperationDesk::ShowReport() {
    Window().ShowAtEnd();
}

ReportWindow& OperationDesk::Window() {
    if (!window_) window_ = std::make_unique<ReportWindow>(screen_);
    return *window_;
}

} // namespace zr5
