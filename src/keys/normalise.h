#pragma once

// What every key goes through, typed or read: the canonical form that the cipher gets, and the
// four digits by which a person knows it again. Keys are bytes of code page 1252.

#include "libs/system/secret.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zr5 {

/// Least number of characters of a canonical key.
inline constexpr std::size_t MinKeyLength = 16;
/// Most characters that a key box takes, blanks included.
inline constexpr std::size_t MaxKeyLength = 64;

/// The canonical key: `text` without the bytes 0 to 32, in upper case.
[[nodiscard]] SecretBytes NormaliseKey(std::string_view text);

/// Whether the canonical form of `text` has MinKeyLength characters or more.
[[nodiscard]] bool KeyLengthSufficient(std::string_view text) noexcept;

/// 1001 to 9999, from the MD5 digest of a canonical key.
[[nodiscard]] std::int16_t KeyChecksum(std::string_view key);

/// "Checksum is 1234"
[[nodiscard]] std::string ChecksumText(std::int16_t checksum);

} // namespace zr5
