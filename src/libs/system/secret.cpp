#include "libs/system/secret.h"

#include <algorithm>
#include <new>
#include <sodium.h>

namespace zr5 {

void Wipe(std::span<std::byte> bytes) noexcept {
    sodium_memzero(bytes.data(), bytes.size());
}

bool EqualInConstantTime(std::span<const std::byte> a, std::span<const std::byte> b) noexcept {
    return a.size() == b.size() && sodium_memcmp(a.data(), b.data(), a.size()) == 0;
}

SecretBytes::SecretBytes(std::size_t size) : size_(size) {
    if (size == 0) return;
    if (sodium_init() < 0) throw std::bad_alloc();
    data_ = static_cast<std::byte*>(sodium_malloc(size));
    if (data_ == nullptr) throw std::bad_alloc();
    std::fill_n(data_, size, std::byte{0});
}

SecretBytes SecretBytes::CopyOf(std::span<const std::byte> bytes) {
    SecretBytes copy(bytes.size());
    std::copy(bytes.begin(), bytes.end(), copy.data_);
    return copy;
}

SecretBytes SecretBytes::CopyOf(std::string_view bytes) {
    return CopyOf(std::as_bytes(std::span(bytes)));
}

SecretBytes& SecretBytes::operator=(SecretBytes&& other) noexcept {
    if (this != &other) {
        Clear();
        data_ = std::exchange(other.data_, nullptr);
        size_ = std::exchange(other.size_, 0);
    }
    return *this;
}

SecretBytes::~SecretBytes() {
    Clear();
}

SecretBytes SecretBytes::Clone() const {
    return CopyOf(bytes());
}

void SecretBytes::Clear() noexcept {
    sodium_free(data_); // wipes first
    data_ = nullptr;
    size_ = 0;
}

std::string_view SecretBytes::text() const noexcept {
    return {reinterpret_cast<const char*>(data_), size_};
}

} // namespace zr5
