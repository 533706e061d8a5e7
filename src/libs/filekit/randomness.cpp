#include "libs/filekit/randomness.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <numbers>

namespace zr5 {
namespace {

constexpr double Steepness = 1.45;
constexpr double MostBits = 8.0;
/// With fewer differences of one residue the estimate of their entropy is not to be trusted.
constexpr std::uint64_t LeastOfAResidue = 1000;

using Counts = std::array<std::uint64_t, 256>;

std::uint64_t SumOf(const Counts& counts) {
    std::uint64_t sum = 0;
    for (const std::uint64_t count : counts)
        sum += count;
    return sum;
}

/// Entropy in bits of the distribution that `counts` were drawn from, as it was observed.
double ObservedEntropy(const Counts& counts, std::uint64_t total) {
    if (total == 0) return 0.0;
    double sum = 0.0;
    for (const std::uint64_t count : counts) {
        if (count != 0) sum += static_cast<double>(count) * std::log2(static_cast<double>(count));
    }
    const auto n = static_cast<double>(total);
    return std::log2(n) - sum / n;
}

/// The observed entropy falls short on average by (m - 1) / (2 n ln 2) bits, m values having
/// occurred among n.
double CorrectedEntropy(const Counts& counts, std::uint64_t total) {
    if (total == 0) return 0.0;
    const auto values = std::ranges::count_if(counts, [](std::uint64_t c) { return c != 0; });
    const double bias =
        static_cast<double>(values - 1) / (2.0 * static_cast<double>(total) * std::numbers::ln2);
    return ObservedEntropy(counts, total) + bias;
}

} // namespace

double BufferRandomness(std::span<const std::byte> bytes) {
    if (bytes.size() < 2) return 0.0;
    Counts counts{};
    for (const std::byte byte : bytes) {
        ++counts[std::to_integer<std::size_t>(byte)];
    }
    const auto possible = static_cast<double>(std::min<std::size_t>(bytes.size(), 256));
    return ObservedEntropy(counts, bytes.size()) / std::log2(possible);
}

/// Two plain loops of known length, so that the first is done many bytes at a time.
template <std::size_t TrackIndex>
void RandomnessMeter::CountTrack() {
    constexpr Track track = Tracks[TrackIndex];
    const std::uint8_t* const bytes = window_.data() + LongestDistance;
    std::array<std::uint8_t, ChunkBytes> values;
    if constexpr (track.distance == 0) {
        std::memcpy(values.data(), bytes, ChunkBytes);
    } else {
        const std::uint8_t* const before = bytes - track.distance;
        for (std::size_t i = 0; i < ChunkBytes; ++i)
            values[i] = static_cast<std::uint8_t>(bytes[i] - before[i]);
    }
    for (std::size_t i = 0; i < ChunkBytes; i += track.lanes) {
        for (std::size_t lane = 0; lane < track.lanes; ++lane)
            ++lanes_[track.firstLane + lane][values[i + lane]];
    }
}

void RandomnessMeter::CountChunk() {
    CountTrack<0>();
    CountTrack<1>();
    CountTrack<2>();
    CountTrack<3>();
    CountTrack<4>();
    CountTrack<5>();
    if (isFirstChunk_) {
        // The first bytes have none before them: their differences are taken back.
        for (const Track& track : Tracks) {
            for (std::size_t i = 0; i < track.distance; ++i)
                --lanes_[track.firstLane + i % track.lanes][window_[LongestDistance + i]];
        }
        isFirstChunk_ = false;
    }
    std::copy_n(window_.end() - LongestDistance, LongestDistance, window_.begin());
    filled_ = 0;
}

void RandomnessMeter::Add(std::span<const std::byte> piece) {
    while (!piece.empty()) {
        const std::size_t part = std::min(piece.size(), ChunkBytes - filled_);
        std::memcpy(window_.data() + LongestDistance + filled_, piece.data(), part);
        filled_ += part;
        piece = piece.subspan(part);
        if (filled_ == ChunkBytes) CountChunk();
    }
}

/// The differences at one residue of the position modulo the distance, those of the chunk that is
/// being filled included.
RandomnessMeter::Histogram RandomnessMeter::Residue(const Track& track, std::size_t residue) const {
    Histogram counts{};
    for (std::size_t lane = residue; lane < track.lanes; lane += track.residues) {
        std::ranges::transform(counts, lanes_[track.firstLane + lane], counts.begin(),
                               std::plus<>{});
    }
    for (std::size_t i = residue + (isFirstChunk_ ? track.distance : 0); i < filled_;
         i += track.residues) {
        const std::size_t at = LongestDistance + i;
        const std::uint8_t before = track.distance == 0 ? 0 : window_[at - track.distance];
        ++counts[static_cast<std::uint8_t>(window_[at] - before)];
    }
    return counts;
}

double RandomnessMeter::LeastEntropy() const {
    double least = MostBits;
    for (const Track& track : Tracks) {
        Histogram all{};
        for (std::size_t residue = 0; residue < track.residues; ++residue) {
            const Histogram counts = Residue(track, residue);
            std::ranges::transform(all, counts, all.begin(), std::plus<>{});
            const std::uint64_t total = SumOf(counts);
            if (total >= LeastOfAResidue) least = std::min(least, CorrectedEntropy(counts, total));
        }
        least = std::min(least, CorrectedEntropy(all, SumOf(all)));
    }
    return least;
}

double RandomnessMeter::Value() const {
    return 1.0 - Steepness * (MostBits - LeastEntropy());
}

double RandomnessMeter::ByteEntropy() const {
    const Histogram bytes = Residue(Tracks[0], 0);
    return ObservedEntropy(bytes, SumOf(bytes));
}

} // namespace zr5
