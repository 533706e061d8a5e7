#include "files/extension_rule.h"

#include "util/paths.h"
#include "util/text.h"

#include <cstdlib>

namespace zr5 {
namespace {

std::string WhyNotAnExtension(std::string_view extension) {
    if (extension.find('.') != std::string_view::npos) return "Extension must not contain \".\"";
    if (extension.empty()) return "Please specify an extension.";
    if (HasForbiddenCharacter(extension, Wildcards::Refused))
        return "Extension must not contain any of these characters: \\ / : < > | \" * ?";
    return {};
}

} // namespace

std::string TidyExtension(std::string_view typed) {
    std::string_view extension = Trim(typed);
    if (extension.starts_with("*.")) {
        extension.remove_prefix(2);
    } else if (extension.starts_with(".")) {
        extension.remove_prefix(1);
    }
    return std::string(extension);
}

bool AcceptsExtension(UserPort& user, std::string_view extension) {
    const std::string reason = WhyNotAnExtension(extension);
    if (!reason.empty()) user.Ask(Notice(reason, "Error", BoxIcon::Exclamation));
    return reason.empty();
}

std::string ExtensionExample(ExampleOf files) {
    switch (files) {
    case ExampleOf::Plaintext:
        return "e.g., txt or doc:";
    case ExampleOf::Encrypted:
        return "e.g., enc:";
    }
    std::abort();
}

} // namespace zr5
