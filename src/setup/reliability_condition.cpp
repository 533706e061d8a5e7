#include "setup/reliability_condition.h"

#include "util/paths.h"
#include "util/text.h"

namespace zr5 {
namespace {

constexpr std::string_view FolderName = "zr5test";
constexpr std::string_view Pattern = "*.tst";

std::string OwnName(std::string_view folder) {
    if (!folder.empty() && IsSeparatorIn(folder, folder.back())) folder.remove_suffix(1);
    return SplitPath(folder).name;
}

} // namespace

bool IsReliabilityTest(const OperationSetup& setup) {
    if (setup.Operation != Direction::Encrypt || setup.InputMode != InputSource::FilesInAFolder ||
        setup.IncludeSubfolders() || setup.EffectivePattern() != Pattern) {
        return false;
    }
    const std::string name = OwnName(setup.Folder[InputSide]);
    return name == FolderName ||
           (IsWindowsShaped(setup.Folder[InputSide]) && LowerCaseWithAccents(name) == FolderName);
}

} // namespace zr5
