#include "app/next_run_setup.h"

#include "setup/identity.h"
#include "util/paths.h"

namespace zr5 {

std::string NextRunSetupPath(FileSystem& fileSystem, const std::string& configFolder) {
    const std::string base = configFolder.empty() ? "/" : WithTrailingSeparator(configFolder);
    const std::string folder = base + MakerName;
    for (const std::string& each : {base, folder}) {
        if (fileSystem.Info(each)) continue;
        if (fileSystem.MakeFolder(each) != FsStatus::Ok) break;
    }
    return folder + SeparatorOf(folder) + NextRunSetupName;
}

std::string JournalPath(const std::string& nextRunSetupPath) {
    return SplitPath(nextRunSetupPath).folder + JournalName;
}

} // namespace zr5
