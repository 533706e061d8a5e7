#include "libs/system/random.h"

#include <sodium.h>

namespace zr5 {

void SystemRandom::Fill(std::span<std::byte> into) {
    randombytes_buf(into.data(), into.size());
}

} // namespace zr5
