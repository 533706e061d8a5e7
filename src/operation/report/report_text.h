#pragma once

// The text of the report screen: one growing block, with a limit.

#include "util/user_port.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace zr5 {

class ReportText {
  public:
    static constexpr std::size_t DefaultCapacity = 4'000'000; ///< characters

    explicit ReportText(std::size_t capacity = DefaultCapacity) : capacity_(capacity) {}

    void Clear();
    void Append(std::string_view text);
    /// Takes `suffix` away from the end; false when the text does not end so.
    bool RemoveSuffix(std::string_view suffix);
    /// Takes the last `count` characters away (all, if there are no more).
    void CutCharacters(std::size_t count);

    [[nodiscard]] const std::string& text() const { return text_; }
    [[nodiscard]] bool IsEmpty() const { return text_.empty(); }
    /// Characters (code points), line ends counting two.
    [[nodiscard]] std::size_t Characters() const { return characters_; }
    /// Line ends so far, which is also the number of the line at the end, counted from 0.
    [[nodiscard]] std::size_t LineEnds() const { return lineEnds_; }
    [[nodiscard]] bool IsFull() const { return characters_ >= capacity_; }

  private:
    std::string text_;
    std::size_t characters_ = 0;
    std::size_t lineEnds_ = 0;
    std::size_t capacity_;
};

/// What a person reads when a run ends for want of memory.
[[nodiscard]] MessageBox OutOfMemoryBox();
/// What a person reads when a report has no room from the start.
[[nodiscard]] MessageBox TextboxFullBox();
/// What "View report screen" says before there is a report.
[[nodiscard]] MessageBox EmptyReportBox();

} // namespace zr5
