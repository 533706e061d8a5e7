#include "operation/anti_virus_warning.h"

#include "operation/extension_lists.h"
#include "util/numbers.h"

#include <numeric>

namespace zr5 {

void ExtensionCounts::Add(const std::string& extension) {
    if (IsInPlaceExcludedExtension(extension)) ++counts_[extension];
}

std::uint64_t ExtensionCounts::Files() const {
    return std::accumulate(counts_.begin(), counts_.end(), std::uint64_t{0},
                           [](std::uint64_t sum, const auto& entry) { return sum + entry.second; });
}

void WarnOfAntiVirus(UserPort& user, const ExtensionCounts& counts) {
    if (counts.ByExtension().empty()) return;
    std::string extensions;
    for (const auto& [extension, count] : counts.ByExtension()) {
        extensions += (extensions.empty() ? "" : ", ") + extension;
    }
    const std::string what =
        counts.ByExtension().size() == 1
            ? "The file with extension " + extensions +
                  " might cause an anti-virus program to haldt program execution."
            : "There are" + AfterText(static_cast<std::int64_t>(counts.Files())) +
                  " files which might cause an anti-virus program to halt program execution. "
                  "In particular files with extension " +
                  extensions + ".";
    user.Ask(Notice(what + "\r\nIf you have anti-virus software running then it is recommended "
                           "that you disable it for this operation.",
                    "Warning!", BoxIcon::Exclamation));
}

} // namespace zr5
