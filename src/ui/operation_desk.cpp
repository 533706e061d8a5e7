#include "ui/operation_desk.h"

#include "operation/checks.h"
#include "operation/file_listing.h"
#include "operation/operation_run.h"
#include "operation/work_list.h"
#include "ui/confirm_window.h"

#include <QPointer>

namespace zr5 {
namespace {

/// While it lives, the main window is out of use: counting, checking and running let the
/// interface react, and nothing must begin a second operation. Disabling takes the focus away,
/// so it is given back.
class OutOfUse {
  public:
    OutOfUse(SetupDesk& setup, QWidget* window)
        : setup_(setup),
          window_(window),
          focus_(window == nullptr ? nullptr : window->focusWidget()) {
        Set(true);
    }
    ~OutOfUse() {
        Set(false);
        if (focus_ != nullptr) focus_->setFocus();
    }
    OutOfUse(const OutOfUse&) = delete;
    OutOfUse& operator=(const OutOfUse&) = delete;

  private:
    void Set(bool outOfUse) {
        setup_.SetOperationRunning(outOfUse);
        if (window_ != nullptr) window_->setEnabled(!outOfUse);
    }

    SetupDesk& setup_;
    QWidget* window_;
    QPointer<QWidget> focus_;
};

} // namespace

OperationDesk::OperationDesk(SetupDesk& setup, const CurrentKey& key, Machine& machine)
    : setup_(setup), key_(key), machine_(machine), screen_(machine.user, machine.clock) {}

void OperationDesk::WhileOutOfUse(const std::function<void(const StopAsked&)>& work) {
    const OutOfUse outOfUse(setup_, mainWindow_);
    stopRequested_ = false;
    work([this] { return stopRequested_; });
}

void OperationDesk::Perform() {
    WhileOutOfUse([this](const StopAsked& stopped) { RunConfirmed(stopped); });
}

void OperationDesk::RunConfirmed(const StopAsked& stopped) {
    ConfirmInWindow confirmation(mainWindow_);
    const OperationSetup& setup = setup_.Setup();
    if (!MayStart(setup, key_, machine_, confirmation, stopped)) return;
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
    WhileOutOfUse([&](const StopAsked& stopped) {
        zr5::ListFiles(setup_.Setup(), machine_, screen_, buttonCaption, stopped, [this] {
            screen_.ShowCount(setup_.Setup().Operation, 0);
            Window().ShowAtEnd();
        });
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
