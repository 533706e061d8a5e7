#include "operation/reliability_rules.h"

#include "util/paths.h"
#include "util/text.h"

#include <charconv>

namespace zr5 {
namespace {

constexpr std::string_view FolderName = "zr5test";
constexpr std::string_view Pattern = "*.tst";

std::string OwnName(std::string_view folder) {
    if (!folder.empty() && IsSeparatorIn(folder, folder.back())) folder.remove_suffix(1);
    return SplitPath(folder).name;
}

/// The number that `typed` is, blanks around it aside; empty when it is anything else.
std::optional<int> WholeNumber(std::string_view typed) {
    typed = Trim(typed);
    int number = 0;
    const auto [end, error] = std::from_chars(typed.data(), typed.data() + typed.size(), number);
    if (error != std::errc{} || end != typed.data() + typed.size()) return std::nullopt;
    return number;
}

} // namespace

bool IsReliabilityTest(const OperationSetup& setup) {
    if (setup.Operation != Function::Encrypt || setup.InputMode != InputSource::FilesInAFolder ||
        setup.IncludeSubfolders() || setup.EffectivePattern() != Pattern) {
        return false;
    }
    const std::string name = OwnName(setup.Folder[Input]);
    return name == FolderName ||
           (IsWindowsShaped(setup.Folder[Input]) && LowerCaseWithAccents(name) == FolderName);
}

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
