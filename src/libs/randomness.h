#pragma once

// How random bytes look, for a file and for a short buffer.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace zr5 {

/// Shannon entropy of the bytes divided by log2(min(n, 256)): 1 when every value that could
/// occur does so equally often. 0 for fewer than two bytes.
[[nodiscard]] double BufferRandomness(std::span<const std::byte> bytes);

/// Collects a file's bytes piece by piece and measures their randomness as 1 - 1.45 D. D is the
/// largest shortfall from 8 bits a byte of the entropy of the bytes and of their differences
/// (modulo 256) at distances 1, 2, 3, 4 and 8, so that counters, tables and samples of sound do
/// not pass for random. Entropy is estimated with the correction of Miller (1955) for few
/// samples.
class RandomnessMeter {
  public:
    void Add(std::span<const std::byte> piece);
    /// At most 1; above 0 for encrypted and compressed content.
    [[nodiscard]] double Value() const;

  private:
    static constexpr std::array<std::size_t, 6> Distances{0, 1, 2, 3, 4, 8};
    static constexpr std::size_t LongestDistance = 8;
    using Histogram = std::array<std::uint64_t, 256>;

    void Count(std::span<const std::uint8_t> bytes, std::size_t from);

    std::array<Histogram, Distances.size()> counts_{};
    std::array<std::uint8_t, LongestDistance> tail_{}; ///< the last bytes added
    std::uint64_t total_ = 0;
};

} // namespace zr5
