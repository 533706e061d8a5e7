#include "operation/report/extension_warnings.h"

#include "setup/wording.h"
#include "util/display.h"
#include "util/numbers.h"
#include "util/paths.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <string_view>

namespace zr5 {
namespace {

constexpr auto InPlaceExcludedExtensions = std::to_array<std::string_view>(
    {"bat", "bin", "com", "dll", "drv", "exe", "ini", "ovl", "pif", "swp", "sys"});

constexpr auto PurgeSensitiveExtensions = std::to_array<std::string_view>({
    "7z",  "accdb", "bmp",  "csv",   "db",  "dbx", "doc",  "docm", "docx", "eml",     "gif",
    "gz",  "htm",   "html", "jpeg",  "jpg", "key", "mbox", "mdb",  "msg",  "numbers", "odp",
    "ods", "odt",   "ost",  "pages", "pdf", "png", "ppt",  "pptx", "pst",  "rar",     "rtf",
    "tar", "tif",   "tiff", "txt",   "wpd", "xls", "xlsm", "xlsx", "xml",  "zip",
});

template <typename List>
bool Holds(const List& list, const std::string& extension) {
    return std::ranges::find(list, extension) != list.end();
}

} // namespace

bool IsInPlaceExcludedExtension(const std::string& extension) {
    return Holds(InPlaceExcludedExtensions, extension);
}

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

bool PurgeWarning::IsDueFor(const std::string& path) const {
    return !suppressed_ && operation_ == Direction::Encrypt &&
           Holds(PurgeSensitiveExtensions, ExtensionOf(path));
}

std::string PurgeWarning::MessageFor(const std::string& path) const {
    return "The file " + DisplayName(path) + " has been " + VerbForm(operation_, "encrypted") +
           ".\r\n\r\n"
           "The file in its original form will now be purged "
           "(overwritten and deleted).  If Kaspersky Anti-Virus (or a similar "
           "utility) is active then it may or may not produce a warning message "
           "(once for each plaintext file which is purged).  "
           "If so, do not stop the operation but rather allow it to continue."
           "\r\n\r\n"
           "If some anti-virus software is running then it is advisable to disable it either "
           "before running Vaultline ZR5 or during a run (like now)."
           "\r\n\r\n"
           "For more secure purging of files Velmora Systems' Shredline is recommended\r\n"
           "(see Velmora Systems' web page for this product).";
}

} // namespace zr5
