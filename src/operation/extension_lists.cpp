#include "operation/extension_lists.h"

#include <algorithm>
#include <array>
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

bool IsPurgeSensitiveExtension(const std::string& extension) {
    return Holds(PurgeSensitiveExtensions, extension);
}

} // namespace zr5
