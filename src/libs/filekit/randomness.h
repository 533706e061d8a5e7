#pragma once

// How random bytes look, for a file and for a short buffer. docs/randomness.md has the formulas,
// their sources, their limits and a calibration on real files.

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
/// (modulo 256) at distances 1, 2, 3, 4 and 8, so that counters, tables, pictures and samples of
/// sound do not pass for random. At a distance d above 1 the d residues of the position modulo d
/// are looked at one by one too, where each has enough differences: the most significant byte of
/// a number tells more than the noise of the others. Entropy is estimated with the correction of
/// Miller (1955) for few samples.
class RandomnessMeter {
  public:
    void Add(std::span<const std::byte> piece);
    /// At most 1; above 0 for encrypted and compressed content.
    [[nodiscard]] double Value() const;
    /// Shannon entropy of the bytes, in bits a byte, as observed: without any correction.
    [[nodiscard]] double ByteEntropy() const;

  private:
    using Histogram = std::array<std::uint64_t, 256>;
    /// A histogram and room behind it: processors wait for a write before they read what lies a
    /// multiple of 4 KiB apart from it, and so would the counters of one value in many lanes.
    using Lane = std::array<std::uint64_t, 256 + 8>;

    /// The differences at one distance (0: the bytes themselves), counted apart in so many lanes
    /// by their position: enough for the residues, and so many that equal bytes in a row do not
    /// wait for one counter.
    struct Track {
        std::size_t distance;
        std::size_t residues; ///< of the position modulo the distance; 1 for the bytes
        std::size_t lanes;
        std::size_t firstLane;
    };
    static constexpr std::array<Track, 6> Tracks{
        {{0, 1, 8, 0}, {1, 1, 8, 8}, {2, 2, 8, 16}, {3, 3, 6, 24}, {4, 4, 8, 30}, {8, 8, 8, 38}}};
    static constexpr std::size_t Lanes = 46;
    static constexpr std::size_t LongestDistance = 8;
    /// A multiple of every number of lanes, and nearly the sample of a listing.
    static constexpr std::size_t ChunkBytes = 4080;

    template <std::size_t TrackIndex>
    void CountTrack();
    void CountChunk();
    [[nodiscard]] Histogram Residue(const Track& track, std::size_t residue) const;
    [[nodiscard]] double LeastEntropy() const;

    /// What precedes the chunk, then the chunk that is being filled, which is not counted yet.
    std::array<std::uint8_t, LongestDistance + ChunkBytes> window_{};
    std::size_t filled_ = 0;
    bool isFirstChunk_ = true;
    std::array<Lane, Lanes> lanes_{};
};

} // namespace zr5
