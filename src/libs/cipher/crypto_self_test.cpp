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
                FromHex("000102030405060708090a0b0c"), "\xf0\xf1\xf2\xf3\xf4\xf5\xf6\xf7\xf8\xf9",
                output) &&
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

/// AES-256-GCM with the nonces of blocks 0 (last) and 258 (not last), the key 00 01 .. 1f;
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
        cipher.Seal(0, true, plain, sealed) &&
        IsHex(sealed, "41bedadc3581597d650e334b83d154d773f0647628215a457b7e69b5efddb15a1a692f");
    const bool second =
        cipher.Seal(258, false, plain, sealed) &&
        IsHex(sealed, "708b882c9002cdeff6847d535011c5c87f2a34e68ed4b3d5232674f973f45bc6a873cd");
    const bool comesBack =
        cipher.Open(258, false, sealed, opened) && std::ranges::equal(plain, opened);
    sealed[3] ^= std::byte{1};
    return first && second && comesBack && !cipher.Open(258, false, sealed, opened);
}

} // namespace

bool CryptoComputesKnownAnswers() {
    return HmacIsRight() && HkdfIsRight() && Argon2IsRight() && BlockCipherIsRight();
}

} // namespace zr5
