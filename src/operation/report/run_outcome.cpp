#include "operation/report/run_outcome.h"

#include "util/numbers.h"

#include <numeric>
#include <utility>

namespace zr5 {

void RunOutcome::Begin(std::string success, std::string failure, std::uint64_t files) {
    *this = {};
    success_ = std::move(success);
    failure_ = std::move(failure);
    files_ = files;
}

std::uint64_t RunOutcome::NotBegun() const {
    const auto counted = std::accumulate(counts_.begin(), counts_.end(), std::uint64_t{0});
    return hasEnded_ && files_ > counted ? files_ - counted : 0;
}

std::string RunOutcome::Text() const {
    if (!HasBegun()) return {};
    std::string text =
        WithThousands(Of(EntryKind::Success) + Of(EntryKind::Warned)) + " " + success_;
    if (const std::uint64_t warned = Of(EntryKind::Warned); warned != 0)
        text += " (" + WithThousands(warned) + " with a warning)";
    const auto add = [&text](std::uint64_t count, const std::string& what) {
        if (count != 0) text += " · " + WithThousands(count) + " " + what;
    };
    add(Of(EntryKind::LeftOut), "left out");
    add(Of(EntryKind::LeftAlone), "left alone");
    add(Of(EntryKind::Failed), failure_);
    add(NotBegun(), "not begun");
    return text;
}

Verdict RunOutcome::GetVerdict() const {
    if (Of(EntryKind::Failed) != 0) return Verdict::Bad;
    const bool asksForALook =
        Of(EntryKind::Warned) != 0 || Of(EntryKind::LeftAlone) != 0 || NotBegun() != 0;
    if (asksForALook) return Verdict::Attention;
    return hasEnded_ ? Verdict::Good : Verdict::None;
}

} // namespace zr5
