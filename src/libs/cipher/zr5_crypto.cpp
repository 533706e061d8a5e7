#include "libs/cipher/zr5_crypto.h"

#include <algorithm>
#include <cassert>
#include <new>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/kdf.h>
#include <openssl/params.h>
#include <sodium.h>

namespace zr5 {
namespace {

constexpr std::size_t NonceBytes = 12;

const unsigned char* Raw(std::span<const std::byte> bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.data());
}
unsigned char* Raw(std::span<std::byte> bytes) {
    return reinterpret_cast<unsigned char*>(bytes.data());
}

std::array<std::byte, NonceBytes> NonceOf(std::uint64_t number) {
    std::array<std::byte, NonceBytes> nonce{};
    PutBigEndian(number, std::span(nonce).last<sizeof number>());
    return nonce;
}

struct FreeCipher {
    void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};
struct FreeKdf {
    void operator()(EVP_KDF* kdf) const { EVP_KDF_free(kdf); }
    void operator()(EVP_KDF_CTX* context) const { EVP_KDF_CTX_free(context); }
};

OSSL_PARAM OctetParam(const char* name, std::span<const std::byte> bytes) {
    // The library takes a pointer to what it only reads.
    return OSSL_PARAM_construct_octet_string(name, const_cast<std::byte*>(bytes.data()),
                                             bytes.size());
}

} // namespace

SecretBytes DeriveMaster(std::span<const std::byte> key,
                         std::span<const std::byte, RunSaltBytes> salt, Argon2Cost cost) {
    static_assert(RunSaltBytes == crypto_pwhash_argon2id_SALTBYTES);
    SecretBytes master(KeyBytes);
    const int result = crypto_pwhash_argon2id(
        Raw(master.bytes()), master.size(), reinterpret_cast<const char*>(key.data()), key.size(),
        Raw(salt), cost.passes, cost.memoryBytes, crypto_pwhash_argon2id_ALG_ARGON2ID13);
    if (result != 0) master.Clear();
    return master;
}

bool Hkdf(std::span<const std::byte> secret, std::span<const std::byte> salt,
          std::span<const std::byte> info, std::span<std::byte> output) {
    static const std::unique_ptr<EVP_KDF, FreeKdf> kdf(EVP_KDF_fetch(nullptr, "HKDF", nullptr));
    const std::unique_ptr<EVP_KDF_CTX, FreeKdf> context(EVP_KDF_CTX_new(kdf.get()));
    if (!context) return false;
    std::array<char, 7> digest{"SHA256"};
    const std::array<OSSL_PARAM, 5> parameters{
        OSSL_PARAM_construct_utf8_string("digest", digest.data(), 0), OctetParam("key", secret),
        OctetParam("salt", salt), OctetParam("info", info), OSSL_PARAM_construct_end()};
    return EVP_KDF_derive(context.get(), Raw(output), output.size(), parameters.data()) == 1;
}

bool HmacSha256(std::span<const std::byte> key, std::span<const std::byte> message, Tag256& tag) {
    unsigned int length = 0;
    return HMAC(EVP_sha256(), key.data(), static_cast<int>(key.size()), Raw(message),
                message.size(), Raw(std::span<std::byte>(tag)), &length) != nullptr &&
           length == tag.size();
}

struct BlockCipher::Contexts {
    std::unique_ptr<EVP_CIPHER_CTX, FreeCipher> seal{EVP_CIPHER_CTX_new()};
    std::unique_ptr<EVP_CIPHER_CTX, FreeCipher> open{EVP_CIPHER_CTX_new()};
};

BlockCipher::BlockCipher(const SecretBytes& blockKey) : contexts_(std::make_unique<Contexts>()) {
    assert(blockKey.size() == KeyBytes);
    if (!contexts_->seal || !contexts_->open ||
        EVP_EncryptInit_ex(contexts_->seal.get(), EVP_aes_256_gcm(), nullptr, Raw(blockKey.bytes()),
                           nullptr) != 1 ||
        EVP_DecryptInit_ex(contexts_->open.get(), EVP_aes_256_gcm(), nullptr, Raw(blockKey.bytes()),
                           nullptr) != 1) {
        throw std::bad_alloc();
    }
}

BlockCipher::~BlockCipher() = default;

bool BlockCipher::Seal(std::uint64_t number, std::span<const std::byte> plain,
                       std::span<std::byte> sealed) {
    assert(sealed.size() == plain.size() + TagBytes);
    EVP_CIPHER_CTX* context = contexts_->seal.get();
    const auto nonce = NonceOf(number);
    const auto tag = sealed.last(TagBytes);
    int written = 0;
    int rest = 0;
    return EVP_EncryptInit_ex(context, nullptr, nullptr, nullptr, Raw(nonce)) == 1 &&
           EVP_EncryptUpdate(context, Raw(sealed), &written, Raw(plain),
                             static_cast<int>(plain.size())) == 1 &&
           EVP_EncryptFinal_ex(context, Raw(sealed) + written, &rest) == 1 &&
           EVP_CIPHER_CTX_ctrl(context, EVP_CTRL_AEAD_GET_TAG, TagBytes, tag.data()) == 1;
}

bool BlockCipher::Open(std::uint64_t number, std::span<const std::byte> sealed,
                       std::span<std::byte> plain) {
    assert(sealed.size() == plain.size() + TagBytes);
    EVP_CIPHER_CTX* context = contexts_->open.get();
    const auto nonce = NonceOf(number);
    std::array<std::byte, TagBytes> tag{};
    std::ranges::copy(sealed.last(TagBytes), tag.begin());
    int written = 0;
    int rest = 0;
    const bool genuine =
        EVP_DecryptInit_ex(context, nullptr, nullptr, nullptr, Raw(nonce)) == 1 &&
        EVP_CIPHER_CTX_ctrl(context, EVP_CTRL_AEAD_SET_TAG, TagBytes, tag.data()) == 1 &&
        EVP_DecryptUpdate(context, Raw(plain), &written, Raw(sealed),
                          static_cast<int>(plain.size())) == 1 &&
        EVP_DecryptFinal_ex(context, Raw(plain) + written, &rest) == 1;
    if (!genuine) Wipe(plain);
    return genuine;
}

} // namespace zr5
