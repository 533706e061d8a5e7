#include "operation/randomness_report.h"

#include "util/display.h"

namespace zr5 {

bool RandomnessReport::OffersChoice() const {
    const OperationSetup& setup = desk_.Setup();
    const std::string output = setup.FilePath(Output);
    return !output.empty() && output != setup.FilePath(Input);
}

void RandomnessReport::Open() {
    if (OffersChoice()) {
        SetState(State::Choosing);
    } else {
        Check(Input);
    }
}

void RandomnessReport::Check(std::size_t index) {
    if (state_ == State::Checking) return;
    const State before = OffersChoice() ? State::Choosing : State::Closed;
    FileRandomness file{index, desk_.Setup().FilePath(index)};
    const auto info = machine_.fileSystem.Info(file.path);
    if (!info) {
        SetState(before);
        machine_.user.Ask(Notice("File " + DisplayName(file.path) + " not found.",
                                 RandomnessReportTitle, BoxIcon::Exclamation));
        return;
    }
    file.lengthBytes = info->lengthBytes;
    closeRequested_ = false;
    fraction_ = 0.0;
    SetState(State::Checking);
    machine_.user.ProcessEvents();
    file.value =
        MeasureWholeFile(machine_, file.path, [this](std::uint64_t done, std::uint64_t total) {
            fraction_ = static_cast<double>(done) / static_cast<double>(total);
            if (changed_) changed_();
            machine_.user.ProcessEvents();
            if (closeRequested_) machine_.fileKit.StopMeasuring();
        });
    if (closeRequested_) {
        SetState(State::Closed);
        return;
    }
    const std::string reason = WhyNoValue(file);
    if (reason.empty()) {
        shown_ = std::move(file);
        SetState(State::Shown);
        return;
    }
    SetState(before);
    machine_.user.Ask(file.value == RandomnessTooSmall
                          ? Notice(reason, RandomnessReportTitle)
                          : Notice(reason, "Error", BoxIcon::Exclamation));
}

void RandomnessReport::Close() {
    if (state_ == State::Checking) {
        closeRequested_ = true;
    } else {
        SetState(State::Closed);
    }
}

void RandomnessReport::SetState(State state) {
    state_ = state;
    desk_.Show(state == State::Closed ? Pane::Menu : Pane::Randomness);
    if (changed_) changed_();
}

} // namespace zr5
