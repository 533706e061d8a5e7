#pragma once

// The rules of the report screen: its text, the states of a run, its buttons, and the flags
// through which the user pauses and stops between files.

#include "libs/system/clock.h"
#include "operation/report/extension_warnings.h"
#include "operation/report/operation_progress.h"
#include "operation/report/report_text.h"
#include "operation/report/run_outcome.h"
#include "setup/wording.h"
#include "util/user_port.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zr5 {

/// The window that shows a ReportScreen.
class ReportView {
  public:
    virtual ~ReportView() = default;
    /// The text is another one altogether.
    virtual void TextReplaced() = 0;
    virtual void TextAppended(std::string_view text) = 0;
    /// `text` was taken away from the end.
    virtual void TextRemoved(std::string_view text) = 0;
    /// Captions, labels, progress or enabled states are others.
    virtual void StateChanged() = 0;
    /// Shows the warning for `path` and tells it (`Closed`) how it was answered.
    virtual void ShowPurgeWarning(PurgeWarning& warning, const std::string& path) = 0;
};

class ReportScreen {
  public:
    enum class State { Idle, Running, Paused, Stopped, Done };

    ReportScreen(UserPort& user, const Clock& clock,
                 std::size_t capacity = ReportText::DefaultCapacity);
    /// The window, or null; it must outlive its being set.
    void SetView(ReportView* view);

    // What the window shows.
    [[nodiscard]] const std::string& text() const { return text_.text(); }
    [[nodiscard]] bool IsEmpty() const { return text_.IsEmpty(); }
    [[nodiscard]] State state() const { return state_; }
    [[nodiscard]] bool IsRunning() const {
        return state_ == State::Running || state_ == State::Paused;
    }
    [[nodiscard]] std::string StopCaption() const;
    [[nodiscard]] bool StopEnabled() const { return IsRunning() && !stopRequested_; }
    [[nodiscard]] std::string PauseCaption() const;
    [[nodiscard]] bool PauseEnabled() const { return IsRunning() && !stopRequested_; }
    [[nodiscard]] std::string PausedDoneText() const;
    [[nodiscard]] static std::string CopyCaption(bool hasSelection);
    [[nodiscard]] const RunClock& Time() const { return time_; }
    /// No files while no operation runs.
    [[nodiscard]] const OperationProgress& Progress() const { return progress_; }
    [[nodiscard]] std::string ProgressText() const;
    /// How the last operation goes or went; kept until the next one.
    [[nodiscard]] const RunOutcome& Outcome() const { return outcome_; }
    /// Whether that operation is what the report is about.
    [[nodiscard]] bool ShowsOutcome() const { return showsOutcome_; }
    /// Whether a key stands in the text.
    [[nodiscard]] bool HoldsKey() const { return holdsKey_; }
    [[nodiscard]] bool MaySave() const { return !IsRunning() && !IsEmpty(); }
    /// The entries that were no success, and not left out as the user had asked.
    [[nodiscard]] const std::vector<ReportEntry>& Problems() const { return problems_; }
    /// The first of them that begins after `line`, or else the first; null when there is none.
    [[nodiscard]] const ReportEntry* NextProblem(std::size_t line) const;
    /// The caption of the window: "Report", how many files were counted, or how it ended.
    [[nodiscard]] const std::string& Caption() const { return caption_; }

    /// Whether the randomness report of the files listed here can be had.
    [[nodiscard]] bool OffersRandomness() const { return writeRandomness_ && !isOutOfUse_; }

    // What the user does.
    void RandomnessPressed();
    void StopPressed();
    /// The program is to end: the run stops within the file.
    void StopAtOnce();
    /// The window is to be closed. False while a run goes on: it is stopped, and the window closes
    /// when it has ended (`ClosesNow`).
    [[nodiscard]] bool MayClose();
    [[nodiscard]] bool ClosesNow() const { return closesAfterRun_ && !IsRunning(); }
    void PauseContinuePressed();
    /// Copies `selection`, or the whole text when it is empty.
    void CopyPressed(const std::string& selection);

    // What a run does.
    void BeginRun(Purpose purpose);
    /// As BeginRun, but the text stays.
    void ContinueWithRun();
    /// Until the next run begins, the user can have `write` write the report.
    void OfferRandomness(std::function<void()> write);
    /// While something else goes on, nothing is offered.
    void SetOutOfUse(bool outOfUse);
    void EndRun();
    /// Ends the run as if the user had pressed Stop.
    void Halt();
    /// Unless reporting of single files is off, appends `text` as it stands; line ends are CR LF.
    void AppendToReport(std::string_view text);
    /// What is appended next tells a key.
    void WillHoldKey() { holdsKey_ = true; }
    /// Appends whatever else is switched off: for headings and the closing summary.
    void AppendAlways(std::string_view text);
    void RemoveFromReport(std::string_view suffix);
    [[nodiscard]] bool IsFull() const { return text_.IsFull(); }
    /// Called when the text can take no more: cuts it, and asks whether to go on without
    /// entries for single files.
    void ReportBufferFull();
    /// The same for a randomness report, which ends.
    void RandomnessBufferFull();
    [[nodiscard]] bool ReportsFiles() const { return !perFileReportingOff_; }
    [[nodiscard]] bool StopRequested() const { return stopRequested_; }
    /// Whether the file that is being written is to be undone.
    [[nodiscard]] bool StopsAtOnce() const { return stopsAtOnce_; }
    /// Between two files: waits while the user has paused.
    void PauseStep();
    /// The operation, or a part of it, is about so many files and bytes; the time left is told of
    /// that.
    void BeginFiles(std::uint64_t files, std::uint64_t totalBytes);
    /// As BeginFiles, for files whose results are counted: see RunOutcome::Begin.
    void BeginOutcome(std::string success, std::string failure, std::uint64_t files);
    /// The lines of a file begin here, and end with the last one so far.
    void BeginEntry() { entryLine_ = text_.LineEnds(); }
    void EndEntry(EntryKind kind);
    void BeginFile(std::string displayName, std::uint64_t lengthBytes, unsigned passes);
    /// Shows how far the current pass over the file has come, and lets the interface react. Valid
    /// as long as the screen is.
    [[nodiscard]] ProgressFunction PassProgress();
    void NextPass();
    /// `listedBytes`: what the file counted in the total.
    void EndFile(std::uint64_t listedBytes);
    /// Shows the running count in the caption.
    void ShowCount(Purpose purpose, std::uint64_t files);
    void ShowPurgeWarning(PurgeWarning& warning, const std::string& path);

  private:
    void SetState(State state);
    void NotifyState();
    void CutText();

    UserPort& user_;
    ReportView* view_ = nullptr;
    ReportText text_;
    State state_ = State::Idle;
    Purpose purpose_ = Purpose::Encrypt;
    bool stopRequested_ = false;
    bool stopsAtOnce_ = false; ///< for good: the program ends
    bool closesAfterRun_ = false;
    bool pauseRequested_ = false;
    bool perFileReportingOff_ = false;
    RunClock time_;
    std::chrono::milliseconds workedBeforeFiles_{0};
    OperationProgress progress_;
    RunOutcome outcome_;
    bool showsOutcome_ = false;
    bool holdsKey_ = false;
    std::size_t entryLine_ = 0;
    std::vector<ReportEntry> problems_;
    std::string caption_ = "Report";
    std::function<void()> writeRandomness_; ///< empty where it is not offered
    bool isOutOfUse_ = false;
};

} // namespace zr5
