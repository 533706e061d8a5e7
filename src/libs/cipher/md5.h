#pragma once

// The MD5 digest (RFC 1321). It serves the key checksum that a person compares by eye and
// protects nothing.

#include <array>
#include <cstdint>
#include <string_view>

namespace zr5 {

using Md5Digest = std::array<std::uint8_t, 16>;

/// The digest of `data`.
[[nodiscard]] Md5Digest MD5Digest(std::string_view data);

} // namespace zr5
