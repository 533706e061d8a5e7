#include "files/specify_input_files.h"

#include "files/extension_rule.h"
#include "setup/verb_form.h"
#include "util/display.h"
#include "util/paths.h"

#include <array>

namespace zr5 {
namespace {

constexpr std::string_view AnyNameWith = "*.";

/// The extension of a pattern that asks for nothing else; empty for every other pattern.
std::string ExtensionOfPattern(const std::string& pattern) {
    if (!pattern.starts_with(AnyNameWith)) return {};
    std::string extension = pattern.substr(AnyNameWith.size());
    const bool isOne = extension.find('.') == std::string::npos &&
                       !HasForbiddenCharacter(extension, Wildcards::Refused);
    return isOne ? extension : std::string{};
}

} // namespace

SpecifyInputFiles::SpecifyInputFiles(UserPort& user, SetupDesk& desk)
    : SpecifyFiles(user), desk_(desk) {
    const OperationSetup& setup = desk_.Setup();
    const std::string pattern = setup.EffectivePattern();
    SetExtension(ExtensionOfPattern(pattern));
    if (!Extension().empty()) {
        Select(ByExtension);
    } else if (pattern == AllFilesPattern) {
        Select(setup.IncludeSubfolders() ? AllFilesAndSubfolders : AllFiles);
    }
}

std::string SpecifyInputFiles::Title() const {
    return VerbForm(desk_.Setup().Operation, "Encrypt") + " files in a folder";
}

std::string SpecifyInputFiles::Subject() const {
    return DisplayName(desk_.Setup().Folder[Input]);
}

std::string SpecifyInputFiles::Caption(std::size_t option) const {
    static constexpr std::array<const char*, Options> Endings{
        " all files in this folder", " all files in this folder and its subfolders",
        " all such files with this extension"};
    return VerbForm(desk_.Setup().Operation, "Encrypt") + Endings.at(option);
}

std::string SpecifyInputFiles::Example() const {
    return ExtensionExample(desk_.Setup().Operation == Function::Encrypt ? ExampleOf::Plaintext
                                                                         : ExampleOf::Encrypted);
}

bool SpecifyInputFiles::Store(std::size_t option, const std::string& extension) {
    if (option == ByExtension)
        return desk_.LeaveFilePattern(std::string(AnyNameWith) + extension,
                                      SetupDesk::Leaving::Speaking);
    return desk_.AnswerSubfolders(option == AllFilesAndSubfolders) &&
           desk_.LeaveFilePattern(AllFilesPattern, SetupDesk::Leaving::Speaking);
}

} // namespace zr5
