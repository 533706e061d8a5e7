#pragma once

// The cryptographic pieces of file format 1, each a standard function of a library.

#include "libs/cipher/zr5_format.h"
#include "libs/system/secret.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace zr5 {

inline constexpr std::size_t KeyBytes = 32;
using Tag256 = std::array<std::byte, 32>;

/// Argon2id (RFC 9106), one lane, version 1.3: 32 bytes from a key of any length and a salt of
/// RunSaltBytes. Empty when the memory is not to be had.
[[nodiscard]] SecretBytes DeriveMaster(std::span<const std::byte> key,
                                       std::span<const std::byte, RunSaltBytes> salt,
                                       Argon2Cost cost);

/// HKDF-SHA256 (RFC 5869), extract and expand; fills `output`. False when the library failed.
[[nodiscard]] bool Hkdf(std::span<const std::byte> secret, std::span<const std::byte> salt,
                        std::span<const std::byte> info, std::span<std::byte> output);

/// HMAC-SHA256 (RFC 2104). False when the library failed.
[[nodiscard]] bool HmacSha256(std::span<const std::byte> key, std::span<const std::byte> message,
                              Tag256& tag);

/// AES-256-GCM (NIST SP 800-38D) with the nonces of the format: the block's number as 12 bytes,
/// big-endian.
class BlockCipher {
  public:
    /// `blockKey` has KeyBytes bytes. Throws std::bad_alloc when the library has no memory.
    explicit BlockCipher(const SecretBytes& blockKey);
    ~BlockCipher();
    BlockCipher(const BlockCipher&) = delete;
    BlockCipher& operator=(const BlockCipher&) = delete;

    /// Encrypts `plain` into `sealed`, which is TagBytes longer. False when the library failed.
    [[nodiscard]] bool Seal(std::uint64_t number, std::span<const std::byte> plain,
                            std::span<std::byte> sealed);
    /// Decrypts `sealed` into `plain`, which is TagBytes shorter. False when the tag does not
    /// fit; `plain` is all zero then, so no byte that was not authenticated leaves here.
    [[nodiscard]] bool Open(std::uint64_t number, std::span<const std::byte> sealed,
                            std::span<std::byte> plain);

  private:
    struct Contexts;
    std::unique_ptr<Contexts> contexts_;
};

/// Whether every piece above computes known answers (RFC 4231, RFC 5869 and the answers of other
/// implementations).
[[nodiscard]] bool CryptoComputesKnownAnswers();

} // namespace zr5
