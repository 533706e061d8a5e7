#include "operation/report/report_screen.h"

#include "setup/wording.h"
#include "util/numbers.h"

#include <algorithm>
#include <utility>

namespace zr5 {
namespace {

constexpr std::size_t CutWhenFull = 500;

} // namespace

ReportScreen::ReportScreen(UserPort& user, const Clock& clock, std::size_t capacity)
    : user_(user), text_(capacity), time_(clock) {}

void ReportScreen::SetView(ReportView* view) {
    view_ = view;
    if (view_ != nullptr) {
        view_->TextReplaced();
        view_->StateChanged();
    }
}

std::string ReportScreen::StopCaption() const {
    const bool isShort = IsRunning() && (stopRequested_ || state_ == State::Paused);
    return isShort ? "Stop" : "Stop at next file";
}

std::string ReportScreen::PauseCaption() const {
    return pauseRequested_ ? "Continue" : "Pause at next file";
}

std::string ReportScreen::PausedDoneText() const {
    switch (state_) {
    case State::Idle:
    case State::Running:
        return stopRequested_ ? "Stopped" : "";
    case State::Paused:
        return "Paused";
    case State::Stopped:
        return "Stopped";
    case State::Done:
        return "Done";
    }
    return {};
}

std::string ReportScreen::CopyCaption(bool hasSelection) {
    return hasSelection ? "Copy selected text to clipboard" : "Copy to clipboard";
}

void ReportScreen::StopPressed() {
    if (!IsRunning()) return;
    stopRequested_ = true;
    pauseRequested_ = false;
    NotifyState();
}

void ReportScreen::StopAtOnce() {
    stopsAtOnce_ = true;
    StopPressed();
}

bool ReportScreen::MayClose() {
    closesAfterRun_ = IsRunning();
    StopPressed();
    return !closesAfterRun_;
}

void ReportScreen::RandomnessPressed() {
    if (!OffersRandomness()) return;
    const auto write = std::exchange(writeRandomness_, {});
    write();
}

void ReportScreen::OfferRandomness(std::function<void()> write) {
    writeRandomness_ = std::move(write);
    NotifyState();
}

void ReportScreen::SetOutOfUse(bool outOfUse) {
    isOutOfUse_ = outOfUse;
    NotifyState();
}

void ReportScreen::PauseContinuePressed() {
    if (!IsRunning() || stopRequested_) return;
    pauseRequested_ = !pauseRequested_;
    NotifyState();
}

void ReportScreen::CopyPressed(const std::string& selection) {
    user_.CopyToClipboard(selection.empty() ? text_.text() : selection);
}

void ReportScreen::BeginRun(Purpose purpose) {
    purpose_ = purpose;
    text_.Clear();
    if (view_ != nullptr) view_->TextReplaced();
    ContinueWithRun();
}

void ReportScreen::ContinueWithRun() {
    writeRandomness_ = {};
    stopRequested_ = stopsAtOnce_;
    pauseRequested_ = false;
    perFileReportingOff_ = false;
    closesAfterRun_ = false;
    progress_ = {};
    showsOutcome_ = holdsKey_ = false;
    problems_.clear();
    time_.Start();
    SetState(State::Running);
}

void ReportScreen::EndRun() {
    time_.Stop();
    pauseRequested_ = false;
    progress_ = {};
    if (showsOutcome_) {
        outcome_.End();
        caption_ = "Report: " + outcome_.Text();
    }
    SetState(stopRequested_ ? State::Stopped : State::Done);
}

void ReportScreen::Halt() {
    stopRequested_ = true;
}

void ReportScreen::AppendToReport(std::string_view text) {
    if (perFileReportingOff_) return;
    text_.Append(text);
    if (view_ != nullptr) view_->TextAppended(text);
}

void ReportScreen::AppendAlways(std::string_view text) {
    text_.Append(text);
    if (view_ != nullptr) view_->TextAppended(text);
}

void ReportScreen::RemoveFromReport(std::string_view suffix) {
    if (text_.RemoveSuffix(suffix) && view_ != nullptr) view_->TextRemoved(suffix);
}

/// So that the closing words find room.
void ReportScreen::CutText() {
    text_.CutCharacters(CutWhenFull);
    std::erase_if(problems_, [end = text_.LineEnds()](const ReportEntry& entry) {
        return entry.firstLine + entry.lines > end;
    });
    if (view_ != nullptr) view_->TextReplaced();
}

void ReportScreen::ReportBufferFull() {
    CutText();
    const Answer answer = user_.Ask(
        Question("The output report buffer has been filled, so this report cannot continue.\r\n"
                 "The operation, however, may continue, but without report of results for "
                 "individual files.\r\n"
                 "It is recommended to continue the operation.  Do you wish to continue?",
                 "Report buffer full", BoxIcon::Exclamation));
    AppendAlways("\r\nThe output report buffer was filled.\r\n");
    if (answer == Answer::Yes) {
        AppendAlways("Subsequent operations on individual files will continue,\r\n"
                     "but results will not be reported here.\r\n");
        perFileReportingOff_ = true;
    } else {
        AppendAlways("This operation was terminated at the user's request.\r\n"
                     "Note: Some files were not " +
                     VerbForm(purpose_, "encrypted") + ".\r\n");
        stopRequested_ = true;
    }
    NotifyState();
}

void ReportScreen::RandomnessBufferFull() {
    CutText();
    user_.Ask(Notice("The output report buffer has been filled.\r\n"
                     "This randomness report cannot continue and will now terminate.",
                     "Report buffer full", BoxIcon::Exclamation));
    AppendAlways("\r\nThe output report buffer was filled.\r\n"
                 "This randomness report was terminated at this point.\r\n");
    Halt();
}

void ReportScreen::PauseStep() {
    if (!pauseRequested_ || stopRequested_) return;
    SetState(State::Paused);
    time_.Pause([this] {
        while (pauseRequested_ && !stopRequested_)
            user_.WaitForEvents();
    });
    SetState(State::Running);
}

void ReportScreen::BeginFiles(std::uint64_t files, std::uint64_t totalBytes) {
    progress_ = {.files = files, .totalBytes = totalBytes, .file = {}};
    workedBeforeFiles_ = time_.Worked();
    NotifyState();
}

void ReportScreen::BeginOutcome(std::string success, std::string failure, std::uint64_t files) {
    outcome_.Begin(std::move(success), std::move(failure), files);
    showsOutcome_ = true;
    NotifyState();
}

void ReportScreen::EndEntry(EntryKind kind) {
    outcome_.Count(kind);
    const bool asksForALook = kind != EntryKind::Success && kind != EntryKind::LeftOut;
    if (!asksForALook || perFileReportingOff_) return;
    problems_.push_back({entryLine_, text_.LineEnds() - entryLine_ + 1, kind});
}

const ReportEntry* ReportScreen::NextProblem(std::size_t line) const {
    if (problems_.empty()) return nullptr;
    const auto next = std::ranges::upper_bound(problems_, line, {}, &ReportEntry::firstLine);
    return &(next == problems_.end() ? problems_.front() : *next);
}

void ReportScreen::BeginFile(std::string displayName, std::uint64_t lengthBytes, unsigned passes) {
    progress_.file = {.name = std::move(displayName),
                      .lengthBytes = lengthBytes,
                      .passes = passes,
                      .isDone = false};
    NotifyState();
}

ProgressFunction ReportScreen::PassProgress() {
    return [this](std::uint64_t done, std::uint64_t total) {
        progress_.file.ofPass = static_cast<double>(done) / static_cast<double>(total);
        NotifyState();
        user_.ProcessEvents();
    };
}

void ReportScreen::NextPass() {
    ++progress_.file.passesDone;
    progress_.file.ofPass = 0.0;
    NotifyState();
}

void ReportScreen::EndFile(std::uint64_t listedBytes) {
    ++progress_.filesDone;
    progress_.filesDoneBytes += listedBytes;
    progress_.file.isDone = true;
    NotifyState();
}

void ReportScreen::ShowCount(Purpose purpose, std::uint64_t files) {
    caption_ = files == 0 ? "Report"
                          : std::to_string(files) + " " + FileWord(files) + " to be " +
                                VerbForm(purpose, "encrypted");
    NotifyState();
}

std::string ReportScreen::ProgressText() const {
    return progress_.Text(time_.Worked() - workedBeforeFiles_);
}

void ReportScreen::ShowPurgeWarning(PurgeWarning& warning, const std::string& path) {
    if (view_ == nullptr || stopsAtOnce_) return;
    time_.Pause([&] { view_->ShowPurgeWarning(warning, path); });
}

void ReportScreen::SetState(State state) {
    state_ = state;
    NotifyState();
}

void ReportScreen::NotifyState() {
    if (view_ != nullptr) view_->StateChanged();
}

} // namespace zr5
