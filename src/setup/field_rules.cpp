#include "setup/field_rules.h"

#include "util/text.h"

namespace zr5 {

std::int64_t LeadingNumber(std::string_view text) {
    constexpr std::int64_t Enough = 1'000'000'000;
    text = Trim(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    std::int64_t number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9' || number >= Enough) break;
        number = number * 10 + (c - '0');
    }
    return negative ? -number : number;
}

std::optional<std::int16_t> TypedMaxNumFiles(std::string_view text) {
    const std::int64_t number = LeadingNumber(text);
    if (number < TypedMaxNumFilesLower || number > TypedMaxNumFilesUpper) return std::nullopt;
    return static_cast<std::int16_t>(number);
}

std::int16_t StoredMaxNumFiles(std::string_view text) {
    constexpr std::int16_t Otherwise = 100; // on purpose not the number after a reset
    const std::int64_t number = LeadingNumber(text);
    if (number < MaxNumFilesLower || number > MaxNumFilesUpper) return Otherwise;
    return static_cast<std::int16_t>(number);
}

MessageBox RefusedMaxNumFilesBox() {
    return Notice("The value for the maximum number of files in a single operation "
                  "must be between 10 and 10000",
                  "Maximum number of files", BoxIcon::Information);
}

MessageBox RefusedPatternBox(std::string_view pattern) {
    return Notice(std::string(pattern) + "\r\nis not a valid file pattern", "Invalid file pattern",
                  BoxIcon::Information);
}

} // namespace zr5
