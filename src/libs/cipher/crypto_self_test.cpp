#include "libs/cipher/zr5_crypto.h"
#include "libs/system/text_encoding.h"

#include <algorithm>
#include <vector>

namespace zr5 {
namespace {

std::vector<std::byte> FromHex(std::string_view hex) {
    std::vector<std::byte> bytes;
    for (; !hex.empty(); hex.remove_prefix(2))
        bytes.push_back(ByteFromHex(hex.substr(0, 2)).value());
    return bytes;
}

std::span<const std::byte> BytesOf(std::string_view text) {
    return std::as_bytes(std::span(text));
}

bool IsHex(std::span<const std::byte> bytes, std::string_view hex) {
    return std::ranges::equal(bytes, FromHex(hex));
}

/// RFC 4231, test case 2.
bool HmacIsRight() {
    Tag256 tag{};
    return HmacSha256(BytesOf("Jefe"), BytesOf("what do ya want for nothing?"), tag) &&
           IsHex(tag, "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843");
}

/// RFC 5869, test case 1.
bool HkdfIsRight() {
    std::array<std::byte, 42> output{};
    return Hkdf(FromHex("0b0b0b0b0b0b0b0b0b0b0b0b0b0b0b0b0b0b0b0b0b0b"),
                FromHex("000102030405060708090a0b0c"), FromHex("f0f1f2f3f4f5f6f7f8f9"), output) &&
           IsHex(output, "3cb25f25faacd57a90434f64d0362f2a2d2d0a90cf1a5a4c5db02d56ecc4c5bf"
                         "34007208d5b887185865");
}

/// Computed with the reference program of the algorithm's authors: version 1.3, 1 pass,
/// 64 KiB, 1 lane.
bool Argon2IsRight() {
    constexpr Argon2Cost Small{1, std::size_t{64} << 10U};
    const auto salt = BytesOf("somesaltsomesalt").first<RunSaltBytes>();
    return IsHex(DeriveMaster(BytesOf("password"), salt, Small).bytes(),
                 "e793d64ef75d58f503d4631b2b149f7f80127c5f3993d89b1c9b781e51d0b413");
}

/// AES-256-GCM with the nonces of blocks 0 and 258, the key 00 01 .. 1f;
/// libsodium's implementation gives the same.
bool BlockCipherIsRight() {
    SecretBytes key(KeyBytes);
    for (std::size_t i = 0; i < KeyBytes; ++i) {
        key.bytes()[i] = static_cast<std::byte>(i);
    }
    BlockCipher cipher(key);
    const auto plain = BytesOf("The quick brown fox");
    std::vector<std::byte> sealed(plain.size() + TagBytes);
    std::vector<std::byte> opened(plain.size());
    const bool first =
        cipher.Seal(0, plain, sealed) &&
        IsHex(sealed, "5ad4d0fec459eade6388cb47775bffb9b42c2ecad8d8214e602e66784937451064f185");
    const bool second =
        cipher.Seal(258, plain, sealed) &&
        IsHex(sealed, "594075b615e979324d3c0b77d47759588579d0a83fc8d24f8ef10a44b45c447df895d2");
    const bool comesBack = cipher.Open(258, sealed, opened) && std::ranges::equal(plain, opened);
    sealed[3] ^= std::byte{1};
    return first && second && comesBack && !cipher.Open(258, sealed, opened);
}

} // namespace

bool CryptoComputesKnownAnswers() {
    return HmacIsRight() && HkdfIsRight() && Argon2IsRight() && BlockCipherIsRight();
}

} // namespace zr5
