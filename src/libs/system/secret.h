#pragma once

// Memory for key material: kept out of swap and core dumps, fenced by guard pages, wiped
// when it goes.

#include <cstddef>
#include <span>
#include <string_view>
#include <utility>

namespace zr5 {

/// Overwrites `bytes` with zeros in a way that the compiler may not leave out.
void Wipe(std::span<std::byte> bytes) noexcept;

/// Whether two byte strings are equal, in a time that depends on their lengths only.
[[nodiscard]] bool EqualInConstantTime(std::span<const std::byte> a,
                                       std::span<const std::byte> b) noexcept;

/// A fixed number of secret bytes with one owner. Copying must be asked for (`Clone`), so that
/// no copy is made by accident; a moved-from or default-made secret is empty.
class SecretBytes {
  public:
    SecretBytes() noexcept = default;
    /// `size` zero bytes; throws std::bad_alloc when no memory is to be had.
    explicit SecretBytes(std::size_t size);
    /// A secret that holds a copy of `bytes`; the caller wipes its own.
    [[nodiscard]] static SecretBytes CopyOf(std::span<const std::byte> bytes);
    [[nodiscard]] static SecretBytes CopyOf(std::string_view bytes);

    SecretBytes(const SecretBytes&) = delete;
    SecretBytes& operator=(const SecretBytes&) = delete;
    SecretBytes(SecretBytes&& other) noexcept
        : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}
    SecretBytes& operator=(SecretBytes&& other) noexcept;
    ~SecretBytes();

    [[nodiscard]] SecretBytes Clone() const;
    /// Wipes the bytes and gives the memory back; the secret is empty then.
    void Clear() noexcept;

    [[nodiscard]] bool empty() const noexcept { return size_ == 0; }
    [[nodiscard]] std::size_t size() const noexcept { return size_; }
    [[nodiscard]] std::span<std::byte> bytes() noexcept { return {data_, size_}; }
    [[nodiscard]] std::span<const std::byte> bytes() const noexcept { return {data_, size_}; }
    /// The bytes as characters of an 8-bit code page. Valid as long as the secret is.
    [[nodiscard]] std::string_view text() const noexcept;

  private:
    std::byte* data_ = nullptr;
    std::size_t size_ = 0;
};

} // namespace zr5
