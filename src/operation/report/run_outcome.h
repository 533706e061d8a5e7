#pragma once

// How a run went, in one line.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zr5 {

/// What became of a file, as a person sorts it.
enum class EntryKind {
    Success,
    Warned,    ///< a success that asks for a look
    LeftOut,   ///< as the user had asked
    LeftAlone, ///< a rule or an answer kept it from being worked on
    Failed,
};
inline constexpr std::size_t EntryKinds = 5;

/// How a run looks at a glance.
enum class Verdict { None, Good, Attention, Bad };

/// The lines of a report that tell of one file.
struct ReportEntry {
    std::size_t firstLine; ///< counted from 0
    std::size_t lines;
    EntryKind kind;
};

class RunOutcome {
  public:
    /// A run over so many files begins, whose successes and failures are called so: "encrypted",
    /// "failed".
    void Begin(std::string success, std::string failure, std::uint64_t files);
    void Count(EntryKind kind) { ++counts_.at(static_cast<std::size_t>(kind)); }
    void End() { hasEnded_ = true; }

    [[nodiscard]] bool HasBegun() const { return !success_.empty(); }
    /// "1,490 encrypted · 7 left alone · 3 failed", and after the end how many files were not
    /// begun; empty before a run.
    [[nodiscard]] std::string Text() const;
    /// While it runs, only what is not as it should be.
    [[nodiscard]] Verdict GetVerdict() const;

  private:
    [[nodiscard]] std::uint64_t Of(EntryKind kind) const {
        return counts_.at(static_cast<std::size_t>(kind));
    }
    [[nodiscard]] std::uint64_t NotBegun() const;

    std::string success_;
    std::string failure_;
    std::uint64_t files_ = 0;
    std::array<std::uint64_t, EntryKinds> counts_{};
    bool hasEnded_ = false;
};

} // namespace zr5
