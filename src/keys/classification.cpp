#include "keys/classification.h"

#include <algorithm>
#include <cassert>

namespace zr5 {
namespace {

constexpr double LeastRandomness = 0.88;
constexpr std::size_t SubstituteBase = 128;

constexpr std::string_view LayoutControls = "\t\n\f\r";
/// The five codes to which the code page gives no character.
constexpr std::string_view Unassigned = "\x81\x8D\x8F\x90\x9D";

bool IsTextByte(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    if (code < 32) return LayoutControls.find(byte) != std::string_view::npos;
    return code != 127 && Unassigned.find(byte) == std::string_view::npos;
}

} // namespace

bool KeyIsText(std::string_view key) {
    const std::size_t last = key.find_last_not_of('\0');
    return std::ranges::all_of(key.substr(0, last == std::string_view::npos ? 0 : last + 1),
                               IsTextByte);
}

double KeyRandomness(FileKit& fileKit, const SecretBytes& buffer) {
    assert(buffer.size() == KeyfileBytes);
    return fileKit.randomness_measure(buffer.bytes());
}

bool KeyIsApparentlyRandom(FileKit& fileKit, const SecretBytes& buffer) {
    return KeyRandomness(fileKit, buffer) >= LeastRandomness;
}

void SubstituteInnerNuls(SecretBytes& buffer) {
    const std::size_t last = buffer.text().find_last_not_of('\0');
    if (last == std::string_view::npos) return;
    for (std::size_t i = 0; i < last; ++i) {
        std::byte& byte = buffer.bytes()[i];
        if (byte == std::byte{0}) byte = static_cast<std::byte>(SubstituteBase - (i + 1));
    }
}

} // namespace zr5
