#include "ui/operation_desk.h"

#include "operation/checks.h"
#include "operation/file_listing.h"
#include "operation/operation_run.h"
#include "operation/reliability_rules.h"
#include "operation/reliability_test.h"
#include "operation/work_list.h"
#include "ui/confirm_window.h"
#include "ui/reliability_test_window.h"

#include <new>
#include <QEvent>
#include <QPointer>

namespace zr5 {
namespace {

/// While it lives, the main window is out of use: counting, checking and running let the
/// interface react, and nothing must begin a second operation. Disabling takes the focus away,
/// so it is given back. `activated` is called when the user turns to the window all the same.
class OutOfUse : public QObject {
  public:
    OutOfUse(SetupDesk& setup, QWidget* window, std::function<void()> activated)
        : setup_(setup),
          window_(window),
          activated_(std::move(activated)),
          focus_(window == nullptr ? nullptr : window->focusWidget()) {
        Set(true);
        if (window_ != nullptr) window_->installEventFilter(this);
    }
    ~OutOfUse() override {
        Set(false);
        if (focus_ != nullptr) focus_->setFocus();
    }
    OutOfUse(const OutOfUse&) = delete;
    OutOfUse& operator=(const OutOfUse&) = delete;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::WindowActivate) activated_();
        return QObject::eventFilter(watched, event);
    }

  private:
    void Set(bool outOfUse) {
        setup_.SetOperationRunning(outOfUse);
        if (window_ != nullptr) window_->setEnabled(!outOfUse);
    }

    SetupDesk& setup_;
    QWidget* window_;
    std::function<void()> activated_;
    QPointer<QWidget> focus_;
};

/// Shows in the main window that it is a test that runs, while it lives.
class TestAnnounced {
  public:
    TestAnnounced(QWidget* window, bool isTest)
        : label_(isTest && window != nullptr
                     ? window->findChild<QWidget*>("lblPerformingReliabilityTest")
                     : nullptr) {
        if (label_ != nullptr) label_->show();
    }
    ~TestAnnounced() {
        if (label_ != nullptr) label_->hide();
    }
    TestAnnounced(const TestAnnounced&) = delete;
    TestAnnounced& operator=(const TestAnnounced&) = delete;

  private:
    QWidget* label_;
};

} // namespace

OperationDesk::OperationDesk(SetupDesk& setup, const CurrentKey& key, Machine& machine,
                             RandomSource& random)
    : setup_(setup),
      key_(key),
      machine_(machine),
      random_(random),
      screen_(machine.user, machine.clock) {}

void OperationDesk::WhileOutOfUse(const std::function<void(const StopAsked&)>& work) {
    const OutOfUse outOfUse(setup_, mainWindow_, [this] {
        if (window_ && screen_.IsRunning()) window_->ComeToFront();
    });
    stopRequested_ = false;
    try {
        work([this] { return stopRequested_; });
    } catch (const std::bad_alloc&) {
        if (screen_.IsRunning()) {
            screen_.Halt();
            screen_.EndRun();
        }
        machine_.user.Ask(OutOfMemoryBox());
    }
}

void OperationDesk::Perform() {
    WhileOutOfUse([this](const StopAsked& stopped) { RunConfirmed(stopped); });
}

void OperationDesk::RunConfirmed(const StopAsked& stopped) {
    ConfirmInWindow confirmation(mainWindow_);
    const OperationSetup& setup = setup_.Setup();
    if (!MayStart(setup, key_, machine_, confirmation, stopped)) return;
    std::optional<int> performances;
    if (IsReliabilityTest(setup)) {
        performances = AskForPerformances(machine_.user, mainWindow_);
        if (!performances) return;
    }
    const TestAnnounced announced(mainWindow_, performances.has_value());
    screen_.ShowCount(setup.Operation, 0);
    screen_.BeginRun(setup.Operation);
    Window().ShowAtEnd();
    const ListedFiles listed = MakeWorkList(
        setup, machine_, [&](std::uint64_t files) { screen_.ShowCount(setup.Operation, files); },
        [this] { return screen_.StopRequested(); });
    const OperationContext operation{setup, key_, listed.list, machine_};
    const ListingSummary summary{0, listed.wasCutShort, listed.randomness};
    if (performances) {
        RunReliabilityTest(operation, {*performances, random_}, screen_, summary);
    } else {
        RunOperation(operation, screen_, summary);
    }
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
