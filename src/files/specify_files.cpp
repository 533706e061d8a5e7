#include "files/specify_files.h"

#include "files/extension_rule.h"

namespace zr5 {

void SpecifyFiles::SetExtension(std::string_view typed) {
    extension_ = TidyExtension(typed);
}

bool SpecifyFiles::Accept() {
    if (!selected_) return false;
    if (*selected_ == ByExtension && !AcceptsExtension(user_, extension_)) return false;
    return Store(*selected_, extension_);
}

} // namespace zr5
