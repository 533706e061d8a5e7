#pragma once

// File format, version 1, as laid down in docs/format.md: the lengths and places of its parts.

#include <array>
#include <cstddef>
#include <cstdint>

namespace zr5 {

inline constexpr std::array<std::byte, 4> FormatMagic{std::byte{'Z'}, std::byte{'R'},
                                                      std::byte{'5'}, std::byte{1}};
inline constexpr std::size_t RunSaltBytes = 16;
inline constexpr std::size_t FileSaltBytes = 32;
inline constexpr std::size_t HeaderTagBytes = 32;
inline constexpr std::size_t RunSaltAt = FormatMagic.size();
inline constexpr std::size_t FileSaltAt = RunSaltAt + RunSaltBytes;
inline constexpr std::size_t HeaderTagAt = FileSaltAt + FileSaltBytes;
inline constexpr std::size_t HeaderBytes = HeaderTagAt + HeaderTagBytes;
static_assert(HeaderBytes == 84);

/// What Argon2id spends on one derivation; the format's version fixes it.
struct Argon2Cost {
    std::uint64_t passes;
    std::size_t memoryBytes;
};
inline constexpr Argon2Cost FormatCost{3, std::size_t{64} << 20U};

inline constexpr std::size_t PlainBlockBytes = 65536;
inline constexpr std::size_t TagBytes = 16;
inline constexpr std::size_t SealedBlockBytes = PlainBlockBytes + TagBytes;

/// Length on disk of the encrypted form of `plainBytes` (at least 1) bytes:
/// header, then blocks of PlainBlockBytes (the last may be short), one tag each.
[[nodiscard]] constexpr std::uint64_t EncryptedLength(std::uint64_t plainBytes) noexcept {
    const std::uint64_t blocks = (plainBytes + PlainBlockBytes - 1) / PlainBlockBytes;
    return HeaderBytes + plainBytes + blocks * TagBytes;
}

/// How the bytes after the header fall into blocks. A remainder that is too short to be a block
/// belongs to none: such a file was cut off or added to.
struct BlockLayout {
    std::uint64_t blocks = 0;
    std::uint64_t plainBytes = 0;
    bool hasRemainder = false;
};

[[nodiscard]] constexpr BlockLayout LayoutOf(std::uint64_t encryptedBytes) noexcept {
    if (encryptedBytes <= HeaderBytes) return {};
    const std::uint64_t body = encryptedBytes - HeaderBytes;
    const std::uint64_t whole = body / SealedBlockBytes;
    const std::uint64_t rest = body % SealedBlockBytes;
    if (rest <= TagBytes) return {whole, whole * PlainBlockBytes, rest != 0};
    return {whole + 1, whole * PlainBlockBytes + rest - TagBytes, false};
}

} // namespace zr5
