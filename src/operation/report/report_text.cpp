#include "operation/report/report_text.h"

#include "util/text.h"

#include <algorithm>

namespace zr5 {
namespace {

bool BeginsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80;
}

std::size_t LineEndsIn(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count(text, '\n'));
}

} // namespace

void ReportText::Clear() {
    text_.clear();
    characters_ = lineEnds_ = 0;
}

void ReportText::Append(std::string_view text) {
    text_ += text;
    characters_ += CharacterCount(text);
    lineEnds_ += LineEndsIn(text);
}

bool ReportText::RemoveSuffix(std::string_view suffix) {
    if (!text_.ends_with(suffix)) return false;
    text_.resize(text_.size() - suffix.size());
    characters_ -= CharacterCount(suffix);
    lineEnds_ -= LineEndsIn(suffix);
    return true;
}

void ReportText::CutCharacters(std::size_t count) {
    std::size_t end = text_.size();
    for (; count != 0 && end != 0; --count) {
        do {
            --end;
        } while (end != 0 && !BeginsCharacter(text_[end]));
        --characters_;
    }
    lineEnds_ -= LineEndsIn(std::string_view(text_).substr(end));
    text_.resize(end);
}

MessageBox OutOfMemoryBox() {
    return Notice("There is not enough memory to go on.\r\n\r\nNothing is lost: the report names "
                  "the files that are done. Please close other programs and start Vaultline ZR5 "
                  "again, which completes what was interrupted.",
                  "Out of memory", BoxIcon::Critical);
}

MessageBox TextboxFullBox() {
    return Notice("Textbox is full.  Report cannot continue.", "Textbox full",
                  BoxIcon::Information);
}

MessageBox EmptyReportBox() {
    return Notice("The report screen is empty.", "Report screen", BoxIcon::Information);
}

} // namespace zr5
