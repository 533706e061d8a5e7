#include "operation/operations.h"

#include "operation/file_listing.h"
#include "operation/operation_run.h"
#include "operation/reliability_test.h"
#include "operation/report/file_saving.h"
#include "setup/reliability_condition.h"

#include <new>
#include <utility>

namespace zr5 {
namespace {

/// While it lives, the main window is out of use, and the report screen offers nothing.
class OutOfUse {
  public:
    OutOfUse(SetupDesk& desk, ReportScreen& screen, OperationWindows& windows)
        : desk_(desk), screen_(screen), windows_(windows) {
        Set(true);
    }
    ~OutOfUse() { Set(false); }
    OutOfUse(const OutOfUse&) = delete;
    OutOfUse& operator=(const OutOfUse&) = delete;

  private:
    void Set(bool outOfUse) {
        desk_.SetOperationRunning(outOfUse);
        screen_.SetOutOfUse(outOfUse);
        windows_.SetOutOfUse(outOfUse);
    }

    SetupDesk& desk_;
    ReportScreen& screen_;
    OperationWindows& windows_;
};

/// Shows that it is a test that runs, while it lives.
class TestAnnounced {
  public:
    TestAnnounced(OperationWindows& windows, bool isTest) : windows_(windows), isTest_(isTest) {
        if (isTest_) windows_.AnnounceTest(true);
    }
    ~TestAnnounced() {
        if (isTest_) windows_.AnnounceTest(false);
    }
    TestAnnounced(const TestAnnounced&) = delete;
    TestAnnounced& operator=(const TestAnnounced&) = delete;

  private:
    OperationWindows& windows_;
    bool isTest_;
};

} // namespace

Operations::Operations(SetupDesk& desk, const CurrentKey& key, Machine& machine)
    : desk_(desk), key_(key), machine_(machine), screen_(machine.user, machine.clock) {}

void Operations::WhileOutOfUse(const std::function<void(const StopAsked&)>& work) {
    RunOutOfUse(work);
    windows_->OperationEnded();
}

void Operations::RunOutOfUse(const std::function<void(const StopAsked&)>& work) {
    const OutOfUse outOfUse(desk_, screen_, *windows_);
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

void Operations::Perform() {
    Run(desk_.Setup());
}

void Operations::Check() {
    OperationSetup setup = desk_.Setup();
    setup.OutputMode = OutputTarget::Nowhere;
    Run(setup);
}

void Operations::Run(const OperationSetup& setup) {
    WhileOutOfUse([&](const StopAsked& stopped) { RunConfirmed(setup, stopped); });
}

void Operations::RunConfirmed(const OperationSetup& setup, const StopAsked& stopped) {
    const auto consent = MayStart(setup, key_, machine_, *windows_, stopped);
    if (!consent) return;
    std::optional<int> performances;
    if (IsReliabilityTest(setup)) {
        performances = windows_->AskForPerformances();
        if (!performances) return;
    }
    const TestAnnounced announced(*windows_, performances.has_value());
    RunListed(setup, *consent, performances);
}

void Operations::RunListed(const OperationSetup& setup, const Consent& consent,
                           std::optional<int> performances) {
    screen_.ShowCount(PurposeOf(setup), 0);
    screen_.BeginRun(PurposeOf(setup));
    windows_->ShowReport();
    const ListedFiles listed = MakeWorkList(
        setup, machine_, [&](std::uint64_t files) { screen_.ShowCount(PurposeOf(setup), files); },
        [this] { return screen_.StopRequested(); });
    OperationJournal journal(machine_.fileSystem);
    const OperationContext operation{.setup = setup,
                                     .key = key_,
                                     .list = listed.list,
                                     .machine = machine_,
                                     .screen = screen_,
                                     .journal = journal,
                                     .replaceable = consent.replaceable,
                                     .inputFolder = consent.inputFolder,
                                     .leavesOut = consent.leavesOut};
    const ListingSummary summary{0, listed.wasCutShort, listed.randomness};
    if (performances) {
        RunReliabilityTest(operation, *performances, summary);
    } else {
        RunOperation(operation, summary);
    }
}

void Operations::ListFiles(const std::string& buttonCaption) {
    WhileOutOfUse([&](const StopAsked& stopped) {
        const auto show = [this] {
            screen_.ShowCount(PurposeOf(desk_.Setup()), 0);
            windows_->ShowReport();
        };
        auto listed =
            zr5::ListFiles(desk_.Setup(), machine_, screen_, buttonCaption, stopped, show);
        if (listed.empty()) return;
        screen_.OfferRandomness([this, listed = std::move(listed)] { ReportRandomness(listed); });
    });
}

void Operations::ReportRandomness(const std::vector<ListedFile>& files) {
    WhileOutOfUse([&](const StopAsked&) { ReportRandomnessOfFiles(files, machine_, screen_); });
}

void Operations::RequestStop() {
    stopRequested_ = true;
    screen_.StopPressed();
}

void Operations::RequestStopAtOnce() {
    RequestStop();
    screen_.StopAtOnce();
}

void Operations::ViewReport() {
    if (screen_.IsEmpty()) {
        machine_.user.Ask(EmptyReportBox());
    } else {
        windows_->ShowReport();
    }
}

bool Operations::SaveReport() {
    return zr5::SaveReport(machine_.fileSystem, machine_.random, machine_.user, screen_);
}

} // namespace zr5
