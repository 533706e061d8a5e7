#include "app/kept_memory.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {
bool keep = false;
} // namespace

namespace zr5::test {

void KeepFreedMemory() noexcept {
    keep = true;
}

} // namespace zr5::test

// The sanitizer brings a heap of its own, and the test is skipped there.
#ifndef __SANITIZE_ADDRESS__
#include <malloc.h>

// The C library's own two, under the names by which a program that replaces them reaches them.
extern "C" void __libc_free(void* memory) noexcept;                       // NOLINT(bugprone-*)
extern "C" void* __libc_realloc(void* memory, std::size_t size) noexcept; // NOLINT(bugprone-*)

extern "C" void free(void* memory) noexcept {
    if (!keep) __libc_free(memory);
}

extern "C" void* realloc(void* memory, std::size_t size) noexcept {
    if (!keep || memory == nullptr) return __libc_realloc(memory, size);
    void* moved = std::malloc(size);
    if (moved != nullptr) std::memcpy(moved, memory, std::min(size, malloc_usable_size(memory)));
    return moved;
}
#endif
