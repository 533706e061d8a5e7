#include "operation/measure/byte_pair_picture.h"

#include "libs/system/clock.h"
#include "operation/measure/randomness_report.h"

#include <algorithm>
#include <array>
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

BytePairPicture::BytePairPicture(FileSystem& fileSystem, UserPort& user, const Clock& clock,
                                 std::string path)
    : fileSystem_(fileSystem), user_(user), clock_(clock), path_(std::move(path)) {
    if (const auto info = fileSystem_.Info(path_)) lengthBytes_ = info->lengthBytes;
    random_ = PairCounts::OfRandom(lengthBytes_ / 2);
}

std::string BytePairPicture::ButtonCaption() const {
    switch (state_) {
    case State::Ready:
        return "Display";
    case State::Drawing:
        return "Stop";
    case State::Finished:
        return "Close";
    }
    return {};
}

int BytePairPicture::ProgressWidth(int fullWidth) const {
    if (lengthBytes_ == 0) return 0;
    const std::uint64_t done = std::min(readBytes_, lengthBytes_); // it may have grown
    return static_cast<int>(done * static_cast<std::uint64_t>(fullWidth) / lengthBytes_);
}

void BytePairPicture::Press() {
    switch (state_) {
    case State::Ready:
        Draw();
        break;
    case State::Drawing:
        stopRequested_ = true;
        break;
    case State::Finished:
        closeRequested_ = true;
        Notify();
        break;
    }
}

bool BytePairPicture::MayClose() {
    closeRequested_ = true;
    stopRequested_ = true;
    return state_ != State::Drawing;
}

void BytePairPicture::Draw() {
    state_ = State::Drawing;
    Notify();
    const FsStatus status = ReadPairs();
    state_ = State::Finished;
    if (counts_.Total() != random_.Total()) random_ = PairCounts::OfRandom(counts_.Total());
    Notify();
    if (status != FsStatus::Ok) user_.Ask(Notice("Error reading file!", RandomnessReportTitle));
}

FsStatus BytePairPicture::ReadPairs() {
    const OpenResult opened = fileSystem_.OpenForReading(path_);
    if (opened.status != FsStatus::Ok) return opened.status;
    std::array<std::byte, ReadBytesAtOnce> block;
    auto shownAt = clock_.Now();
    while (!stopRequested_) {
        const ReadResult got = opened.file->Read(block);
        counts_.Add(std::span(block).first(got.count));
        readBytes_ += got.count;
        if (got.status != FsStatus::Ok) return got.status;
        if (got.count < block.size()) break;
        if (clock_.Now() - shownAt < ProgressInterval) continue;
        Notify();
        user_.ProcessEvents();
        shownAt = clock_.Now();
    }
    return FsStatus::Ok;
}

void BytePairPicture::Notify() {
    if (changed_) changed_();
}

} // namespace zr5
