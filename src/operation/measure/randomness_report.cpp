#include "operation/measure/randomness_report.h"

#include "util/display.h"
#include "util/numbers.h"
#include "util/paths.h"

namespace zr5 {
namespace {

constexpr std::uint64_t WholeFile = 0;
constexpr int Decimals = 3;

std::string NameOf(const FileRandomness& file) {
    return DisplayName(SplitPath(file.path).name);
}

} // namespace

double MeasureWholeFile(Machine& machine, const std::string& path, ProgressFunction progress,
                        const std::function<bool()>& stopped) {
    const ProgressFunction shown = Throttled(machine.clock, std::move(progress));
    const auto goesOn = [&](std::uint64_t done, std::uint64_t total) {
        shown(done, total);
        return !stopped();
    };
    return machine.fileKit.fr(path, WholeFile, goesOn);
}

std::string FileLine(const FileRandomness& file) {
    return (file.side == InputSide ? "Input file: " : "Output file: ") + NameOf(file);
}

std::string SizeLine(const FileRandomness& file) {
    return "Filesize = " + WithThousands(file.lengthBytes) + " bytes";
}

std::string RandomnessLine(const FileRandomness& file) {
    return "Randomness = " + WithThousands(file.value, Decimals);
}

std::string Meaning(const FileRandomness& file) {
    return file.value > 0 ? "Above 0: it looks encrypted or compressed."
                          : "Not above 0: it looks neither encrypted nor compressed.";
}

std::string WhyNoValue(const FileRandomness& file) {
    if (file.value == RandomnessTooSmall) {
        return NameOf(file) + " is too small (" + std::to_string(file.lengthBytes) +
               " bytes) to have a randomness value.";
    }
    if (file.value > RandomnessFailureLimit) return {};
    return "Cannot give a randomness report for this file.";
}

bool RandomnessReport::OffersChoice() const {
    const OperationSetup& setup = desk_.Setup();
    const std::string output = setup.FilePath(OutputSide);
    return !output.empty() && output != setup.FilePath(InputSide);
}

void RandomnessReport::Open() {
    if (OffersChoice()) {
        SetState(State::Choosing);
    } else {
        Check(InputSide);
    }
}

void RandomnessReport::Check(std::size_t side) {
    if (state_ == State::Checking) return;
    const State before = OffersChoice() ? State::Choosing : State::Closed;
    FileRandomness file{side, desk_.Setup().FilePath(side)};
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
    const auto show = [this](std::uint64_t done, std::uint64_t total) {
        fraction_ = static_cast<double>(done) / static_cast<double>(total);
        if (changed_) changed_();
        machine_.user.ProcessEvents();
    };
    file.value = MeasureWholeFile(machine_, file.path, show, [this] { return closeRequested_; });
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
