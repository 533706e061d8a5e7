#include "operation/reliability_rules.h"

#include "util/text.h"

#include <charconv>

namespace zr5 {
namespace {

/// The number that `typed` is, blanks around it aside; empty when it is anything else.
std::optional<int> WholeNumber(std::string_view typed) {
    typed = Trim(typed);
    int number = 0;
    const auto [end, error] = std::from_chars(typed.data(), typed.data() + typed.size(), number);
    if (error != std::errc{} || end != typed.data() + typed.size()) return std::nullopt;
    return number;
}

} // namespace

std::string ReliabilityTestForm::Text() {
    return "You have chosen to encrypt files with .tst extension in a subfolder "
           "named zr5test, which indicates that you wish to "
           "perform the reliability test.\r\n\r\n"
           "The first performance of the test uses the currently specified key. "
           "Subsequent performances use randomly-generated keys.";
}

std::string ReliabilityTestForm::KeyNote() {
    return "The report will contain the key if it is text, and its bytes if the test fails.";
}

bool ReliabilityTestForm::Start(std::string_view typed) {
    const std::optional<int> number = WholeNumber(typed);
    if (!number || *number < 1 || *number > MostPerformances) {
        user_.Ask(Notice("The number of performances must be a whole number between 1 and " +
                             std::to_string(MostPerformances) + ".",
                         "Number of performances", BoxIcon::Information));
        return false;
    }
    performances_ = number;
    return true;
}

} // namespace zr5
