#include "libs/cipher/md5.h"

#include <cstdlib>
#include <openssl/evp.h>

namespace zr5 {

Md5Digest MD5Digest(std::string_view data) {
    Md5Digest digest{};
    if (EVP_Digest(data.data(), data.size(), digest.data(), nullptr, EVP_md5(), nullptr) != 1) {
        std::abort(); // the library was built without MD5
    }
    return digest;
}

} // namespace zr5
