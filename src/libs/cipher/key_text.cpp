#include "libs/cipher/key_text.h"

#include <algorithm>

namespace zr5 {
namespace {

constexpr std::string_view LayoutControls = "\t\n\f\r";
/// The five codes to which the code page gives no character.
constexpr std::string_view Unassigned = "\x81\x8D\x8F\x90\x9D";

bool IsTextByte(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    if (code < 32) return LayoutControls.find(byte) != std::string_view::npos;
    return code != 127 && Unassigned.find(byte) == std::string_view::npos;
}

} // namespace

bool KeyBytesAreText(std::string_view key) {
    const std::size_t last = key.find_last_not_of('\0');
    return std::ranges::all_of(key.substr(0, last == std::string_view::npos ? 0 : last + 1),
                               IsTextByte);
}

} // namespace zr5
