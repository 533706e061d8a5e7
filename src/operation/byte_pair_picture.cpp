#include "operation/byte_pair_picture.h"

#include "libs/system/progress.h"
#include "operation/file_randomness.h"

#include <algorithm>
#include <array>

namespace zr5 {

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
    std::array<std::byte, BlockBytes> block;
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
