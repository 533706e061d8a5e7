#include "libs/cipher/md5.h"

#include <cstdlib>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/provider.h>

namespace zr5 {

namespace {

/// From a part of the library of its own: where the machine is set up for approved algorithms only,
/// the others are missing in the common one. Here nothing rests on MD5 being strong.
const EVP_MD* Md5() {
    static OSSL_LIB_CTX* const own = OSSL_LIB_CTX_new();
    static OSSL_PROVIDER* const provider = OSSL_PROVIDER_load(own, "default");
    static const EVP_MD* const md5 =
        provider != nullptr ? EVP_MD_fetch(own, "MD5", nullptr) : nullptr;
    return md5;
}

} // namespace

Md5Digest MD5Digest(std::string_view data) {
    Md5Digest digest{};
    if (EVP_Digest(data.data(), data.size(), digest.data(), nullptr, Md5(), nullptr) != 1) {
        std::abort(); // the library was built without MD5
    }
    return digest;
}

} // namespace zr5
