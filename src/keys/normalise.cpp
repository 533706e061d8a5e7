#include "keys/normalise.h"

#include "libs/cipher/md5.h"
#include "util/code_page.h"
#include "util/numbers.h"

#include <algorithm>
#include <span>

namespace zr5 {
namespace {

bool BelongsToKey(char character) noexcept {
    return static_cast<std::uint8_t>(character) > 32;
}

std::size_t CanonicalLength(std::string_view text) noexcept {
    return static_cast<std::size_t>(std::ranges::count_if(text, BelongsToKey));
}

} // namespace

SecretBytes NormaliseKey(std::string_view text) {
    SecretBytes key(CanonicalLength(text));
    auto next = key.bytes().begin();
    for (const char character : text) {
        if (!BelongsToKey(character)) continue;
        *next++ = std::byte{UpperCase1252(static_cast<std::uint8_t>(character))};
    }
    return key;
}

bool KeyLengthSufficient(std::string_view text) noexcept {
    return CanonicalLength(text) >= MinKeyLength;
}

std::int16_t KeyChecksum(std::string_view key) {
    constexpr std::uint32_t Range = 8999;
    constexpr std::uint32_t Least = 1001;
    Md5Digest digest = MD5Digest(key);
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < digest.size(); i += 2) {
        sum += digest[i] * 0x10000U + digest[i + 1];
    }
    Wipe(std::as_writable_bytes(std::span(digest)));
    return static_cast<std::int16_t>(sum % Range + Least);
}

std::string ChecksumText(std::int16_t checksum) {
    return "Checksum is" + AfterText(checksum);
}

} // namespace zr5
