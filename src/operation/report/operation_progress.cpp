#include "operation/report/operation_progress.h"

#include "util/durations.h"
#include "util/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace zr5 {
namespace {

std::string HoursAndMinutes(std::chrono::milliseconds timeOfDay) {
    const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(timeOfDay).count();
    char text[16];
    std::snprintf(text, sizeof text, "%02d:%02d", static_cast<int>(minutes / 60 % 24),
                  static_cast<int>(minutes % 60));
    return text;
}

} // namespace

double FileProgress::Fraction() const {
    if (isDone) return 1.0;
    const double done = static_cast<double>(passesDone) + std::clamp(ofPass, 0.0, 1.0);
    return std::min(done / static_cast<double>(passes), 1.0);
}

std::uint64_t OperationProgress::BytesDone() const {
    const double current =
        file.isDone ? 0.0 : file.Fraction() * static_cast<double>(file.lengthBytes);
    return std::min(filesDoneBytes + static_cast<std::uint64_t>(current), totalBytes);
}

double OperationProgress::Fraction() const {
    constexpr double BytesOfAFile = 65536.0;
    const double all = static_cast<double>(totalBytes) + BytesOfAFile * static_cast<double>(files);
    const double done =
        static_cast<double>(BytesDone()) + BytesOfAFile * static_cast<double>(filesDone);
    return all > 0 ? std::min(done / all, 1.0) : 0.0;
}

std::string OperationProgress::Text(std::chrono::milliseconds worked) const {
    constexpr double Megabyte = 1024.0 * 1024.0;
    constexpr double EnoughToJudge = 0.02;
    const auto megabytes = [](std::uint64_t bytes) {
        return WithThousands(static_cast<double>(bytes) / Megabyte, 2);
    };
    std::string text = WithThousands(filesDone) + " of " + WithThousands(files) + " files, " +
                       megabytes(BytesDone()) + " of " + megabytes(totalBytes) + " MB";
    const double fraction = Fraction();
    if (fraction > EnoughToJudge) {
        const double seconds =
            static_cast<double>(worked.count()) / 1000.0 * (1.0 - fraction) / fraction;
        text += ", " + FormatDuration(static_cast<std::uint64_t>(std::llround(seconds))) + " left";
    }
    return text;
}

void RunClock::Start() {
    state_ = State::Running;
    startedAt_ = clock_.Now();
    startTimeOfDay_ = clock_.TimeOfDay();
    pausedFor_ = {};
}

void RunClock::Stop() {
    ranFor_ = Elapsed();
    state_ = State::Stopped;
}

void RunClock::Pause(const std::function<void()>& wait) {
    const std::chrono::milliseconds since = clock_.Now();
    wait();
    pausedFor_ += clock_.Now() - since;
}

std::chrono::milliseconds RunClock::Elapsed() const {
    return state_ == State::Running ? clock_.Now() - startedAt_ : ranFor_;
}

std::int64_t RunClock::ElapsedSeconds() const {
    return std::chrono::round<std::chrono::seconds>(Elapsed()).count();
}

std::string RunClock::Text() const {
    if (state_ == State::NotStarted) return {};
    const auto seconds = static_cast<std::uint64_t>(ElapsedSeconds());
    return "Started " + HoursAndMinutes(startTimeOfDay_) + ", elapsed " +
           FormatDuration(seconds, DurationForm::Long);
}

} // namespace zr5
