#include "operation/report/report_text.h"

#include "util/text.h"

namespace zr5 {
namespace {

bool BeginsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80;
}

} // namespace

void ReportText::Clear() {
    text_.clear();
    characters_ = 0;
}

void ReportText::Append(std::string_view text) {
    text_ += text;
    characters_ += CharacterCount(text);
}

bool ReportText::RemoveSuffix(std::string_view suffix) {
    if (!text_.ends_with(suffix)) return false;
    text_.resize(text_.size() - suffix.size());
    characters_ -= CharacterCount(suffix);
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
    text_.resize(end);
}

} // namespace zr5
