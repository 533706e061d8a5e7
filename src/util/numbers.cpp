#include "util/numbers.h"

#include <cmath>
#include <cstdio>

namespace zr5 {
namespace {

/// Puts the separators into the run of digits that begins at `first` and ends before `end`.
void InsertSeparators(std::string& digits, std::size_t first, std::size_t end) {
    for (std::size_t at = end; at > first + 3;) {
        at -= 3;
        digits.insert(at, 1, ',');
    }
}

} // namespace

std::string WithThousands(std::uint64_t number) {
    std::string text = std::to_string(number);
    InsertSeparators(text, 0, text.size());
    return text;
}

std::string WithThousands(double number, int decimals) {
    char digits[400];
    // snprintf follows the C locale's decimal point only if the program changed it.
    const int length = std::snprintf(digits, sizeof digits, "%.*f", decimals, std::fabs(number));
    std::string text(digits, static_cast<std::size_t>(length));
    const std::size_t wholeEnd =
        text.size() - (decimals > 0 ? static_cast<std::size_t>(decimals) + 1 : 0);
    if (decimals > 0) text[wholeEnd] = '.';
    InsertSeparators(text, 0, wholeEnd);
    return number < 0 ? "-" + text : text;
}

std::string AfterText(std::int64_t number) {
    return number < 0 ? std::to_string(number) : " " + std::to_string(number);
}

std::string FileWord(std::uint64_t count) {
    return count == 1 ? "file" : "files";
}

} // namespace zr5
