#include "operation/pair_counts.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace zr5 {

void PairCounts::Add(std::span<const std::byte> block) {
    for (std::size_t i = 0; i + 1 < block.size(); i += 2) {
        const auto first = std::to_integer<std::size_t>(block[i]);
        const auto second = std::to_integer<std::size_t>(block[i + 1]);
        ++counts_[second * PairSide + first];
    }
    total_ += block.size() / 2;
}

std::vector<std::uint8_t> PairCounts::Brightness() const {
    constexpr double Brightest = 255.0;
    const double even =
        std::sqrt(static_cast<double>(total_) / static_cast<double>(counts_.size()));
    std::vector<std::uint8_t> brightness(counts_.size());
    std::ranges::transform(counts_, brightness.begin(), [&](std::uint64_t count) {
        if (count == 0) return std::uint8_t{0};
        const double root = std::sqrt(static_cast<double>(count));
        return static_cast<std::uint8_t>(std::lround(Brightest * root / (root + even)));
    });
    return brightness;
}

/// Each pair in turn gets its share of what the pairs before it have left: that is how often so
/// many independent draws hit each of them, without drawing one by one.
PairCounts PairCounts::OfRandom(std::uint64_t pairs) {
    std::mt19937_64 engine; // NOLINT(cert-msc32-c,cert-msc51-cpp): the same picture every time
    PairCounts random;
    random.total_ = pairs;
    std::uint64_t left = pairs;
    for (std::size_t i = 0; i < random.counts_.size(); ++i) {
        const double share = 1.0 / static_cast<double>(random.counts_.size() - i);
        std::binomial_distribution<std::int64_t> hits(static_cast<std::int64_t>(left), share);
        random.counts_[i] = static_cast<std::uint64_t>(hits(engine));
        left -= random.counts_[i];
    }
    return random;
}

} // namespace zr5
