#include "app/web_link.h"

#include "libs/system/text_encoding.h"
#include "util/numbers.h"
#include "util/paths.h"

namespace zr5 {
namespace {

constexpr std::int32_t LastFailureCode = 32;
constexpr std::string_view Http = "http:";

bool StandsForItself(char c) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return letter || (c >= '0' && c <= '9') ||
           std::string_view("/-._~").find(c) != std::string_view::npos;
}

} // namespace

void OpenWebLink(UserPort& user, std::string address) {
    if (const auto at = address.find(Http); at != std::string::npos)
        address.replace(at, Http.size(), "https:");
    const std::int32_t code = user.OpenAddress(address);
    if (code > LastFailureCode) return;
    user.Ask(
        Notice(WebLinkError(code, address), "Cannot launch web browser", BoxIcon::Exclamation));
}

std::string WebLinkError(std::int32_t code, std::string_view address) {
    std::string text = "Error launching web browser, error code =" + AfterText(code) + ".";
    if (code == 31) {
        text += "\r\n\r\nFile extension '" + ExtensionOf(address) +
                "' is not associated with any application program.";
    } else if (code == 8) {
        text += "\r\n\r\nOut of memory.";
    } else if (code == 2) {
        text += "\r\n\r\nPlease try once more.";
    }
    return text;
}

std::string FileAddress(std::string_view path) {
    std::string address = "file://";
    for (const char c : path) {
        if (StandsForItself(c)) {
            address += c;
            continue;
        }
        address += '%';
        AppendHex(address, static_cast<std::byte>(c), HexDigits::Upper);
    }
    return address;
}

} // namespace zr5
