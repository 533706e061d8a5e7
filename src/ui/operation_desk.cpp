#include "ui/operation_desk.h"

#include "operation/checks.h"
#include "operation/file_listing.h"
#include "operation/operation_run.h"
#include "operation/work_list.h"
#include "ui/confirm_window.h"

namespace zr5 {
namespace {

/// While it lives, the main window is out of use: counting, checking and running let the
/// interface react, and nothing must begin a second operation.
class OutOfUse {
  public:
    OutOfUse(SetupDesk& setup, QWidget* window) : setup_(setup), window_(window) { Set(true); }
    ~OutOfUse() { Set(false); }
    OutOfUse(const OutOfUse&) = delete;
    OutOfUse& operator=(const OutOfUse&) = delete;

  private:
    void Set(bool outOfUse) {
        setup_.SetOperationRunning(outOfUse);
        if (window_ != nullptr) window_->setEnabled(!outOfUse);
    }

    SetupDesk& setup_;
    QWidget* window_;
};

} // namespace

OperationDesk::OperationDesk(SetupDesk& setup, const CurrentKey& key, Machine& machine)
    : setup_(setup), key_(key), machine_(machine), screen_(machine.user, machine.clock) {}

void OperationDesk::Perform() {
    ConfirmInWindow confirmation(mainWindow_);
    const OperationSetup& setup = setup_.Setup();
    const OutOfUse outOfUse(setup_, mainWindow_);
    stopRequested_ = false;
    if (!MayStart(setup, key_, machine_, confirmation, [this] { return stopRequested_; })) return;
    screen_.ShowCount(setup.Operation, 0);
    screen_.BeginRun(setup.Operation);
    Window().ShowAtEnd();
    const ListedFiles listed = MakeWorkList(
        setup, machine_, [&](std::uint64_t files) { screen_.ShowCount(setup.Operation, files); },
        [this] { return screen_.StopRequested(); });
    RunOperation({setup, key_, listed.list, machine_}, screen_,
                 {0, listed.wasCutShort, listed.randomness});
}

void OperationDesk::ListFiles(const std::string& buttonCaption) {
    const OutOfUse outOfUse(setup_, mainWindow_);
    zr5::ListFiles(setup_.Setup(), machine_, screen_, buttonCaption, [this] {
        screen_.ShowCount(setup_.Setup().Operation, 0);
        Window().ShowAtEnd();
    });
}

void OperationDesk::RequestStop() {
    stopRequested_ = true;
    screen_.StopPressed();
}

void OperationDesk::ShowReport() {
    Window().ShowAtEnd();
}

ReportWindow& OperationDesk::Window() {
    if (!window_) window_ = std::make_unique<ReportWindow>(screen_);
    return *window_;
}

} // namespace zr5
