#include "operation/report/operation_progress.h"

#include "util/durations.h"
#include "util/numbers.h"

#include <algorithm>
#include <cmath>

namespace zr5 {

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

} // namespace zr5
