#include "setup/delimited_fields.h"

#include <algorithm>
#include <charconv>

namespace zr5 {
namespace {

constexpr std::string_view Blanks = " \t";

} // namespace

std::optional<std::string_view> DelimitedFields::NextText() {
    SkipBlanks();
    if (rest_.empty()) return std::nullopt;
    const bool quoted = rest_.front() == '"';
    if (quoted) rest_.remove_prefix(1);
    const std::size_t end =
        std::min(rest_.find_first_of(quoted ? "\"\r\n" : ",\"\r\n"), rest_.size());
    std::string_view field = rest_.substr(0, end);
    rest_.remove_prefix(end);
    if (quoted) {
        if (!rest_.starts_with('"')) return std::nullopt;
        rest_.remove_prefix(1);
    } else {
        field = field.substr(0, field.find_last_not_of(Blanks) + 1);
    }
    const bool holdsNul = field.find('\0') != std::string_view::npos;
    if (!SkipDelimiter() || holdsNul) return std::nullopt;
    return field;
}

std::optional<std::int16_t> DelimitedFields::NextNumber() {
    const auto field = NextText();
    if (!field) return std::nullopt;
    std::int16_t number = 0;
    const char* end = field->data() + field->size();
    const auto [stop, error] = std::from_chars(field->data(), end, number);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return number;
}

void DelimitedFields::SkipBlanks() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(Blanks), rest_.size()));
}

bool DelimitedFields::SkipDelimiter() {
    SkipBlanks();
    if (rest_.empty()) return true;
    const char first = rest_.front();
    if (first != ',' && first != '\r' && first != '\n') return false;
    rest_.remove_prefix(rest_.starts_with("\r\n") ? 2 : 1);
    return true;
}

} // namespace zr5
