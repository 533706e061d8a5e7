#include "libs/randomness.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace zr5 {
namespace {

constexpr double Steepness = 1.45;
constexpr double MostBits = 8.0;

/// Entropy in bits of the distribution that `counts` were drawn from, as it was observed.
double ObservedEntropy(std::span<const std::uint64_t, 256> counts, std::uint64_t total) {
    double sum = 0.0;
    for (const std::uint64_t count : counts) {
        if (count != 0) sum += static_cast<double>(count) * std::log2(static_cast<double>(count));
    }
    const auto n = static_cast<double>(total);
    return std::log2(n) - sum / n;
}

/// The observed entropy falls short on average by (m - 1) / (2 n ln 2) bits, m values having
/// occurred among n.
double CorrectedEntropy(std::span<const std::uint64_t, 256> counts, std::uint64_t total) {
    if (total == 0) return 0.0;
    const auto values = std::ranges::count_if(counts, [](std::uint64_t c) { return c != 0; });
    const double bias =
        static_cast<double>(values - 1) / (2.0 * static_cast<double>(total) * std::numbers::ln2);
    return ObservedEntropy(counts, total) + bias;
}

} // namespace

double BufferRandomness(std::span<const std::byte> bytes) {
    if (bytes.size() < 2) return 0.0;
    std::array<std::uint64_t, 256> counts{};
    for (const std::byte byte : bytes) {
        ++counts[std::to_integer<std::size_t>(byte)];
    }
    const auto possible = static_cast<double>(std::min<std::size_t>(bytes.size(), 256));
    return ObservedEntropy(counts, bytes.size()) / std::log2(possible);
}

void RandomnessMeter::Count(std::span<const std::uint8_t> bytes, std::size_t from) {
    for (std::size_t k = 0; k < Distances.size(); ++k) {
        const std::size_t distance = Distances[k];
        Histogram& counts = counts_[k];
        if (distance == 0) {
            for (std::size_t i = from; i < bytes.size(); ++i) {
                ++counts[bytes[i]];
            }
            continue;
        }
        for (std::size_t i = std::max(from, distance); i < bytes.size(); ++i) {
            ++counts[static_cast<std::uint8_t>(bytes[i] - bytes[i - distance])];
        }
    }
}

void RandomnessMeter::Add(std::span<const std::byte> piece) {
    // The bytes before the piece are put in front of it, so that differences reach back.
    const std::size_t before =
        static_cast<std::size_t>(std::min<std::uint64_t>(total_, LongestDistance));
    std::vector<std::uint8_t> bytes(before + piece.size());
    std::copy(tail_.end() - static_cast<std::ptrdiff_t>(before), tail_.end(), bytes.begin());
    std::ranges::transform(piece, bytes.begin() + static_cast<std::ptrdiff_t>(before),
                           [](std::byte b) { return std::to_integer<std::uint8_t>(b); });
    Count(bytes, before);
    total_ += piece.size();
    const std::size_t kept = std::min(bytes.size(), LongestDistance);
    std::copy(bytes.end() - static_cast<std::ptrdiff_t>(kept), bytes.end(),
              tail_.end() - static_cast<std::ptrdiff_t>(kept));
}

double RandomnessMeter::Value() const {
    double least = MostBits;
    for (std::size_t k = 0; k < Distances.size(); ++k) {
        const std::uint64_t total = total_ > Distances[k] ? total_ - Distances[k] : 0;
        least = std::min(least, CorrectedEntropy(counts_[k], total));
    }
    return 1.0 - Steepness * (MostBits - least);
}

} // namespace zr5
