#include "files/specify_files.h"

#include "files/extension_rule.h"
#include "setup/wording.h"
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

void SpecifyFiles::SetExtension(std::string_view typed) {
    extension_ = TidyExtension(typed);
}

bool SpecifyFiles::Accept() {
    if (!selected_) return false;
    if (*selected_ == ByExtension && !AcceptsExtension(user_, extension_)) return false;
    return Store(*selected_, extension_);
}

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
    return DisplayName(desk_.Setup().Folder[InputSide]);
}

std::string SpecifyInputFiles::Caption(std::size_t option) const {
    static constexpr std::array<const char*, Options> Endings{
        " all files in this folder", " all files in this folder and its subfolders",
        " all such files with this extension"};
    return VerbForm(desk_.Setup().Operation, "Encrypt") + Endings.at(option);
}

std::string SpecifyInputFiles::Example() const {
    return ExtensionExample(desk_.Setup().Operation == Direction::Encrypt ? ExampleOf::Plaintext
                                                                          : ExampleOf::Encrypted);
}

bool SpecifyInputFiles::Store(std::size_t option, const std::string& extension) {
    if (option == ByExtension) return desk_.LeaveFilePattern(std::string(AnyNameWith) + extension);
    return desk_.AnswerSubfolders(option == AllFilesAndSubfolders) &&
           desk_.LeaveFilePattern(AllFilesPattern);
}

SpecifyOutputFiles::SpecifyOutputFiles(UserPort& user, FileSystem& fileSystem,
                                       const SetupDesk& desk, SingleFileChoice& choice)
    : SpecifyFiles(user), desk_(desk), choice_(choice) {
    const OperationSetup& setup = desk_.Setup();
    const std::string output = setup.FilePath(OutputSide);
    const std::string extension = SplitName(setup.FileName[OutputSide]).extension;
    if (output.empty()) {
        Select(ByExtension);
    } else if (!extension.empty() &&
               output == PathWithExtension(setup.FilePath(InputSide), extension)) {
        Select(ByExtension);
        SetExtension(DisplayName(extension));
    } else {
        Select(fileSystem.Info(output) ? ExistingFile : NewFile);
    }
}

std::string SpecifyOutputFiles::Title() const {
    return "Specify output file";
}

std::string SpecifyOutputFiles::Subject() const {
    return DisplayName(desk_.Setup().FilePath(InputSide));
}

std::string SpecifyOutputFiles::Caption(std::size_t option) const {
    static constexpr std::array<const char*, Options> Endings{
        " to an existing file (which will be overwritten):", " to a new file:",
        " to a file with the same name but with this extension"};
    return VerbForm(desk_.Setup().Operation, "Encrypt") + Endings.at(option);
}

std::string SpecifyOutputFiles::Example() const {
    return ExtensionExample(desk_.Setup().Operation == Direction::Encrypt ? ExampleOf::Encrypted
                                                                          : ExampleOf::Plaintext);
}

bool SpecifyOutputFiles::Store(std::size_t option, const std::string& extension) {
    if (option == ByExtension) return choice_.NameOutputByExtension(extension, Title());
    return option == ExistingFile ? choice_.ChooseExistingOutput(Title())
                                  : choice_.ChooseOutput(Title());
}

} // namespace zr5
