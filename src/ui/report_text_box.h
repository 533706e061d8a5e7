#pragma once

// `txbText` of the report: gathers what is appended, so that ten thousand entries do not cost ten
// thousand repaints, and marks the entries that ask for a look.

#include "operation/report/run_outcome.h"

#include <QPlainTextEdit>
#include <string>
#include <string_view>
#include <vector>

namespace zr5 {

class ReportTextBox final : public QPlainTextEdit {
  public:
    explicit ReportTextBox(QWidget* parent);

    /// The text is another one altogether.
    void Replace(const std::string& text, const std::vector<ReportEntry>& problems);
    /// Shows with the next `Flush`.
    void Append(std::string_view text) { waiting_ += text; }
    /// Takes `text` away from the end.
    void Remove(std::string_view text);
    /// Shows what was appended, its problems marked; the end is in view then, unless something is
    /// selected.
    void Flush(const std::vector<ReportEntry>& problems);
    void ScrollToEnd();
    /// Selects the lines of an entry and brings them into view.
    void ShowEntry(const ReportEntry& entry);
    /// What is selected, with line ends as "\n".
    [[nodiscard]] std::string Selected() const;

  private:
    void Insert();
    void Mark(const std::vector<ReportEntry>& problems);

    std::string waiting_;    ///< appended, but not yet shown
    std::size_t marked_ = 0; ///< so many of the problems
};

} // namespace zr5
