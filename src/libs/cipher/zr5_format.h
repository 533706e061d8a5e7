#pragma once

// File format, version 1, as laid down in docs/format.md: the lengths and places of its parts.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace zr5 {

/// "ZR5"; the version follows.
inline constexpr std::array<std::byte, 3> FormatName{std::byte{'Z'}, std::byte{'R'},
                                                     std::byte{'5'}};
inline constexpr std::byte FormatVersion{1};
inline constexpr std::size_t RunSaltBytes = 16;
inline constexpr std::size_t FileSaltBytes = 32;
inline constexpr std::size_t LengthBytes = 8;
inline constexpr std::size_t HeaderTagBytes = 32;
inline constexpr std::size_t VersionAt = FormatName.size();
inline constexpr std::size_t RunSaltAt = VersionAt + 1;
inline constexpr std::size_t FileSaltAt = RunSaltAt + RunSaltBytes;
inline constexpr std::size_t LengthAt = FileSaltAt + FileSaltBytes;
inline constexpr std::size_t HeaderTagAt = LengthAt + LengthBytes;
inline constexpr std::size_t HeaderBytes = HeaderTagAt + HeaderTagBytes;
static_assert(HeaderBytes == 92);

/// Numbers of the format have their most significant byte first.
constexpr void PutBigEndian(std::uint64_t number, std::span<std::byte, 8> into) noexcept {
    for (std::size_t i = into.size(); i-- > 0; number >>= 8U)
        into[i] = static_cast<std::byte>(number & 0xFFU);
}

[[nodiscard]] constexpr std::uint64_t BigEndian(std::span<const std::byte, 8> bytes) noexcept {
    std::uint64_t number = 0;
    for (const std::byte byte : bytes)
        number = number << 8U | std::to_integer<std::uint64_t>(byte);
    return number;
}

/// What Argon2id spends on one derivation; the format's version fixes it.
struct Argon2Cost {
    std::uint64_t passes;
    std::size_t memoryBytes;
};
inline constexpr Argon2Cost FormatCost{3, std::size_t{256} << 20U};

inline constexpr std::size_t PlainBlockBytes = 65536;
inline constexpr std::size_t TagBytes = 16;
inline constexpr std::size_t SealedBlockBytes = PlainBlockBytes + TagBytes;

/// A plaintext has at least one byte, and at most so many that no sum of the format overflows.
inline constexpr std::uint64_t MostPlainBytes = std::uint64_t{1} << 62U;

/// Into how many blocks a plaintext is cut; only the last may be short.
[[nodiscard]] constexpr std::uint64_t BlocksOf(std::uint64_t plainBytes) noexcept {
    return (plainBytes + PlainBlockBytes - 1) / PlainBlockBytes;
}

/// Length of all blocks of a plaintext on the disk, each with its tag.
[[nodiscard]] constexpr std::uint64_t SealedLength(std::uint64_t plainBytes) noexcept {
    return plainBytes + BlocksOf(plainBytes) * TagBytes;
}

/// Length on disk of the encrypted form of a plaintext: the blocks between two headers.
[[nodiscard]] constexpr std::uint64_t EncryptedLength(std::uint64_t plainBytes) noexcept {
    return SealedLength(plainBytes) + 2 * HeaderBytes;
}

} // namespace zr5
