#pragma once

#include "libs/cipher/md5.h"

#include <string>
#include <string_view>

namespace zr5::test {

inline std::string Md5Text(std::string_view bytes) {
    std::string text;
    for (const unsigned byte : MD5Digest(bytes)) {
        text += "0123456789abcdef"[byte >> 4U];
        text += "0123456789abcdef"[byte & 15U];
    }
    return text;
}

} // namespace zr5::test
