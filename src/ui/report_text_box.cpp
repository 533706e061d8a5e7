#include "ui/report_text_box.h"

#include "ui/appearance.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"

#include <QFontDatabase>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>

namespace zr5 {
namespace {

/// The cursor selects the lines of an entry.
QTextCursor CursorOver(QTextDocument& document, const ReportEntry& entry) {
    const auto first = static_cast<int>(entry.firstLine);
    const QTextBlock last = document.findBlockByNumber(first + static_cast<int>(entry.lines) - 1);
    QTextCursor cursor(document.findBlockByNumber(first));
    cursor.setPosition(last.position() + last.length() - 1, QTextCursor::KeepAnchor);
    return cursor;
}

} // namespace

ReportTextBox::ReportTextBox(QWidget* parent) : QPlainTextEdit(parent) {
    setObjectName(QStringLiteral("txbText"));
    setReadOnly(true);
    setUndoRedoEnabled(false);
    // The result of a file with a long name must not lie out of sight.
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    document()->setDocumentMargin(FrameMargin);
}

void ReportTextBox::Replace(const std::string& text, const std::vector<ReportEntry>& problems) {
    waiting_.clear();
    marked_ = 0;
    setPlainText(ToQt(text));
    moveCursor(QTextCursor::End);
    Mark(problems);
}

void ReportTextBox::Remove(std::string_view text) {
    if (waiting_.ends_with(text)) {
        waiting_.resize(waiting_.size() - text.size());
        return;
    }
    Insert();
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    cursor.movePosition(QTextCursor::PreviousCharacter, QTextCursor::KeepAnchor,
                        static_cast<int>(ToQt(text).size()));
    cursor.removeSelectedText();
}

void ReportTextBox::Insert() {
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(ToQt(waiting_));
    waiting_.clear();
}

void ReportTextBox::Flush(const std::vector<ReportEntry>& problems) {
    if (waiting_.empty()) return;
    Insert();
    Mark(problems);
    if (textCursor().hasSelection()) return;
    moveCursor(QTextCursor::End);
    ScrollToEnd();
}

void ReportTextBox::ScrollToEnd() {
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void ReportTextBox::Mark(const std::vector<ReportEntry>& problems) {
    for (; marked_ < problems.size(); ++marked_) {
        const ReportEntry& entry = problems[marked_];
        const bool hasFailed = entry.kind == EntryKind::Failed;
        QTextBlockFormat format;
        format.setBackground(Tint(hasFailed ? Verdict::Bad : Verdict::Attention, palette()));
        CursorOver(*document(), entry).setBlockFormat(format);
    }
}

void ReportTextBox::ShowEntry(const ReportEntry& entry) {
    setTextCursor(CursorOver(*document(), entry));
    centerCursor();
}

std::string ReportTextBox::Selected() const {
    QString selected = textCursor().selectedText();
    selected.replace(QChar(QChar::ParagraphSeparator), QLatin1Char('\n'));
    return FromQt(selected);
}

} // namespace zr5
