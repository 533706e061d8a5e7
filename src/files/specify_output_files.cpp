#include "files/specify_output_files.h"

#include "files/extension_rule.h"
#include "setup/verb_form.h"
#include "util/display.h"
#include "util/paths.h"

#include <array>

namespace zr5 {

SpecifyOutputFiles::SpecifyOutputFiles(UserPort& user, FileSystem& fileSystem,
                                       const SetupDesk& desk, SingleFileChoice& choice)
    : SpecifyFiles(user), desk_(desk), choice_(choice) {
    const OperationSetup& setup = desk_.Setup();
    const std::string output = setup.FilePath(Output);
    const std::string extension = SplitName(setup.FileName[Output]).extension;
    if (output.empty()) {
        Select(ByExtension);
    } else if (!extension.empty() &&
               output == PathWithExtension(setup.FilePath(Input), extension)) {
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
    return DisplayName(desk_.Setup().FilePath(Input));
}

std::string SpecifyOutputFiles::Caption(std::size_t option) const {
    static constexpr std::array<const char*, Options> Endings{
        " to an existing file (which will be overwritten):", " to a new file:",
        " to a file with the same name but with this extension"};
    return VerbForm(desk_.Setup().Operation, "Encrypt") + Endings.at(option);
}

std::string SpecifyOutputFiles::Example() const {
    return ExtensionExample(desk_.Setup().Operation == Function::Encrypt ? ExampleOf::Encrypted
                                                                         : ExampleOf::Plaintext);
}

bool SpecifyOutputFiles::Store(std::size_t option, const std::string& extension) {
    if (option == ByExtension) return choice_.NameOutputByExtension(extension, Title());
    return option == ExistingFile ? choice_.ChooseExistingOutput(Title())
                                  : choice_.ChooseOutput(Title());
}

} // namespace zr5
