#pragma once

// What stands behind the main window's operation buttons, in its order: checks, confirmation, how
// often, the list, the run on the report screen, and what is said when memory is short.

#include "operation/checks.h"
#include "operation/measure/randomness_of_files.h"
#include "operation/report/report_screen.h"
#include "setup/setup_desk.h"
#include "util/machine.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zr5 {

/// The windows of an operation.
class OperationWindows : public ConfirmationView {
  public:
    /// How often the reliability test is to be performed; empty when the user gives it up.
    [[nodiscard]] virtual std::optional<int> AskForPerformances() = 0;
    /// Shows the report screen with its caret at the end of the text.
    virtual void ShowReport() = 0;
    /// Puts the main window out of use, or into use again with the focus where it was: counting,
    /// checking and running let the interface react, and nothing must begin a second operation.
    virtual void SetOutOfUse(bool outOfUse) = 0;
    /// What put the main window out of use has ended, and it is in use again.
    virtual void OperationEnded() = 0;
    /// Shows in the main window whether it is the reliability test that runs.
    virtual void AnnounceTest(bool runs) = 0;
};

class Operations {
  public:
    /// All of it outlives this.
    Operations(SetupDesk& desk, const CurrentKey& key, Machine& machine);
    /// Set before any other call; null when the windows go.
    void SetWindows(OperationWindows* windows) { windows_ = windows; }

    /// "Perform": checks, confirmation, and the run on the report screen. The input is known to
    /// be there. Returns when the run has ended.
    void Perform();
    /// "Check the encrypted files": as Perform, but nothing is written and no question asked. A
    /// decryption is selected.
    void Check();
    /// "List files"; boxes have `buttonCaption` as their title. Returns when the listing has ended;
    /// the report screen then offers the randomness of the listed files.
    void ListFiles(const std::string& buttonCaption);
    /// Runs `work`, which lets the interface react, with the main window out of use. What it is
    /// handed tells it when `RequestStop` was called.
    void WhileOutOfUse(const std::function<void(const StopAsked&)>& work);
    /// The running operation is to stop after the file it is working on.
    void RequestStop();
    /// As RequestStop, but the file that is being written is undone; a replacement that has begun
    /// is finished.
    void RequestStopAtOnce();
    /// "View report screen".
    void ViewReport();
    /// "Save report" of the report screen. Whether it was saved.
    bool SaveReport();

    [[nodiscard]] ReportScreen& Screen() { return screen_; }

  private:
    void RunOutOfUse(const std::function<void(const StopAsked&)>& work);
    void ReportRandomness(const std::vector<ListedFile>& files);
    void Run(const OperationSetup& setup);
    void RunConfirmed(const OperationSetup& setup, const StopAsked& stopped);
    void RunListed(const OperationSetup& setup, const Consent& consent,
                   std::optional<int> performances);

    SetupDesk& desk_;
    const CurrentKey& key_;
    Machine& machine_;
    ReportScreen screen_;
    OperationWindows* windows_ = nullptr;
    bool stopRequested_ = false; ///< since the main window went out of use
};

} // namespace zr5
