#include "libs/system/text_encoding.h"

#include <clocale>
#include <cwctype>
#include <locale.h>

namespace zr5 {

char32_t LowerCase(char32_t codePoint) noexcept {
    static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (utf8 == nullptr) {
        return codePoint >= U'A' && codePoint <= U'Z' ? codePoint + 0x20 : codePoint;
    }
    return static_cast<char32_t>(towlower_l(static_cast<wint_t>(codePoint), utf8));
}

} // namespace zr5
