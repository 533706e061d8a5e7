#include "keys/classification.h"

#include <cassert>
#include <cstdint>
#include <cstdlib>

namespace zr5 {
namespace {

constexpr double LeastRandomness = 0.88;
constexpr std::size_t SubstituteBase = 128;

} // namespace

bool KeyIsText(const CipherEngine& engine, const SecretBytes& buffer) {
    return engine.key_is_text(buffer.text(), static_cast<std::int32_t>(buffer.size())) != 0;
}

double KeyRandomness(FileKit& fileKit, const SecretBytes& buffer) {
    assert(buffer.size() == KeyfileBytes);
    return fileKit.randomness_measure(buffer.text(), std::int32_t{KeyfileBytes},
                                      std::int16_t{KeyfileBytes});
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

std::string_view ClassLine(KeyClass keyClass) {
    switch (keyClass) {
    case KeyClass::NewRandom:
        return "New random key in file";
    case KeyClass::ApparentlyRandom:
        return "Apparently random key from file";
    case KeyClass::Text:
        return "Text key from file";
    case KeyClass::NonRandomNonText:
        return "Non-random non-text key from file";
    }
    std::abort();
}

} // namespace zr5
