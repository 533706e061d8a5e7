#pragma once

// How often each pair of bytes occurs, and how bright that is in a picture.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zr5 {

inline constexpr std::size_t PairSide = 256;

class PairCounts {
  public:
    /// Takes the pairs 1 and 2, 3 and 4, ... of a block; a last byte without partner is left out.
    void Add(std::span<const std::byte> block);
    [[nodiscard]] std::uint64_t Total() const { return total_; }
    [[nodiscard]] std::uint64_t Of(std::uint8_t first, std::uint8_t second) const {
        return counts_[second * PairSide + first];
    }

    /// The brightness of every pair, row by row: the second byte is the row, the first the column.
    /// It depends on how often the pair occurs, compared with an even distribution: 0 never, 128
    /// just as often, 255 far more often. Square roots, because those of counts of random bytes
    /// scatter alike whatever the count.
    [[nodiscard]] std::vector<std::uint8_t> Brightness() const;

    /// So many pairs of random bytes, the same ones each time.
    [[nodiscard]] static PairCounts OfRandom(std::uint64_t pairs);

  private:
    std::vector<std::uint64_t> counts_ = std::vector<std::uint64_t>(PairSide * PairSide);
    std::uint64_t total_ = 0;
};

} // namespace zr5
