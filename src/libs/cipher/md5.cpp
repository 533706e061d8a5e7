#include "libs/cipher/md5.h"

#include <algorithm>
#include <cstdlib>
#include <openssl/evp.h>

namespace zr5 {

Md5Digest MD5Digest(std::string_view data, std::int32_t length) {
    const std::size_t count =
        length < 0 ? data.size() : std::min(data.size(), static_cast<std::size_t>(length));
    Md5Digest digest{};
    if (EVP_Digest(data.data(), count, digest.data(), nullptr, EVP_md5(), nullptr) != 1) {
        std::abort(); // the library was built without MD5
    }
    return digest;
}

} // namespace zr5
