#include "libs/cipher/sealed_reader.h"

#include <algorithm>

namespace zr5 {

bool SealedReader::ReadAt(std::uint64_t offset, std::span<std::byte> into) {
    if (file_.MoveTo(offset) != FsStatus::Ok) return false;
    const ReadResult got = file_.Read(into);
    return got.status == FsStatus::Ok && got.count == into.size();
}

EngineResult SealedReader::ReadHeaders(std::uint64_t fileBytes) {
    fileBytes_ = fileBytes;
    if (fileBytes <= HeaderBytes) return EngineResult::WrongKeyOrCorrupt;
    HeaderImage front{};
    HeaderImage end{};
    const bool hasFront = ReadAt(0, front);
    const bool hasEnd = ReadAt(fileBytes - HeaderBytes, end);
    Side found = Side::Front;
    OpenedHeader opened = OpenHeader(front, job_.masters);
    if (opened.result == EngineResult::WrongKeyOrCorrupt && end != front) {
        found = Side::End;
        opened = OpenHeader(end, job_.masters);
    }
    if (opened.result == EngineResult::WrongKeyOrCorrupt) {
        job_.damage.isOfNewerVersion = LooksLikeNewerHeader(front) || LooksLikeNewerHeader(end);
        return hasFront && hasEnd ? opened.result : EngineResult::ReadError;
    }
    if (opened.result != EngineResult::Success) return opened.result;
    const bool isTwofold = front == end;
    return PlaceBlocks(opened.header, found, isTwofold);
}

/// Counts from the header that was found to the blocks that are there as a whole.
EngineResult SealedReader::PlaceBlocks(const FileHeader& header, Side found, bool isTwofold) {
    cipher_.emplace(header.blockKey);
    headerAt_ = found == Side::Front ? 0 : fileBytes_ - HeaderBytes;
    plainBytes_ = header.plainBytes;
    const std::uint64_t expected = EncryptedLength(plainBytes_);
    const std::uint64_t missing = expected > fileBytes_ ? expected - fileBytes_ : 0;
    end_ = BlocksOf(plainBytes_);
    readTo_ = HeaderBytes;
    if (found == Side::Front && missing > HeaderBytes) {
        end_ = (fileBytes_ - HeaderBytes) / SealedBlockBytes;
    } else if (found == Side::End) {
        begin_ = missing <= HeaderBytes
                     ? 0
                     : (missing - HeaderBytes + SealedBlockBytes - 1) / SealedBlockBytes;
        // Sums wrap around where bytes are missing, and come out right all the same.
        readTo_ = HeaderBytes + fileBytes_ - expected + begin_ * SealedBlockBytes;
    }
    if (!isTwofold || fileBytes_ != expected) {
        job_.damage.wrongEnd = {found == Side::Front ? Side::End : Side::Front,
                                static_cast<std::int64_t>(fileBytes_ - expected)};
    }
    job_.damage.missingPlainBytes = plainBytes_ - PlainBytes();
    if (begin_ >= end_) return EngineResult::WrongKeyOrCorrupt;
    if (begin_ != 0) Lose(GapBytes());
    number_ = begin_;
    return file_.MoveTo(readTo_) == FsStatus::Ok ? EngineResult::Success : EngineResult::ReadError;
}

std::uint64_t SealedReader::PlainBytes() const {
    return std::min(plainBytes_, end_ * PlainBlockBytes);
}

std::size_t SealedReader::NextPlainBytes(std::uint64_t blocks) const {
    return static_cast<std::size_t>(
        std::min(plainBytes_ - number_ * PlainBlockBytes, blocks * PlainBlockBytes));
}

SealedReader::Piece SealedReader::Next() {
    const std::uint64_t blocks = std::min<std::uint64_t>(BlocksInPiece, end_ - number_);
    const auto sealed = job_.sealedBuffer.first(NextPlainBytes(blocks) +
                                                static_cast<std::size_t>(blocks) * TagBytes);
    const ReadResult got = file_.Read(sealed);
    const bool isRead = got.status == FsStatus::Ok && got.count == sealed.size();
    if (!isRead && !ReadBlockByBlock(sealed)) {
        job_.damage.missingPlainBytes = plainBytes_ - number_ * PlainBlockBytes;
        return {{}, true};
    }
    // A long file must not drive what others have out of the system's memory.
    if (fileBytes_ > SealedPieceBytes) file_.ForgetCached(readTo_, sealed.size());
    readTo_ += sealed.size();
    return {OpenPiece(sealed), false};
}

/// Where a piece could not be read as a whole: what cannot be read becomes zeros, which open as
/// nothing. False when none of its blocks could be read, nor anything else of the file.
bool SealedReader::ReadBlockByBlock(std::span<std::byte> sealed) {
    bool any = false;
    for (std::size_t at = 0; at < sealed.size() && !job_.IsStopped(); at += SealedBlockBytes) {
        const auto block = sealed.subspan(at, std::min(SealedBlockBytes, sealed.size() - at));
        const bool isRead = ReadAt(readTo_ + at, block);
        if (!isRead) Wipe(block);
        any = any || isRead;
        readFailed_ = readFailed_ || !isRead;
        job_.ShowProgress(readTo_ + at, fileBytes_);
    }
    return (any || IsDiskThere()) && file_.MoveTo(readTo_ + sealed.size()) == FsStatus::Ok;
}

/// By a place that could be read before, and not from the system's memory.
bool SealedReader::IsDiskThere() {
    HeaderImage image{};
    file_.ForgetCached(headerAt_, HeaderBytes);
    return ReadAt(headerAt_, image);
}

std::span<const std::byte> SealedReader::OpenPiece(std::span<const std::byte> sealed) {
    std::size_t filled = 0;
    for (std::size_t at = 0; at < sealed.size(); at += SealedBlockBytes) {
        const auto block = sealed.subspan(at, std::min(SealedBlockBytes, sealed.size() - at));
        const auto plain = job_.plainBuffer.subspan(filled, block.size() - TagBytes);
        if (cipher_->Open(number_, block, plain)) {
            ++opened_;
        } else {
            ++damaged_;
            Lose(plain.size());
        }
        filled += plain.size();
        ++number_;
    }
    return job_.plainBuffer.first(filled);
}

/// So many bytes of the plaintext from block `number_` on; neighbours are one stretch.
void SealedReader::Lose(std::uint64_t plainBytes) {
    Damage& damage = job_.damage;
    const std::uint64_t from = number_ * PlainBlockBytes;
    const bool goesOn = damage.lostStretches != 0 && from == lostTo_;
    if (!goesOn) ++damage.lostStretches;
    lostTo_ = from + plainBytes;
    if (damage.lostStretches > Damage::MostStretches) return;
    if (!goesOn) damage.lost.push_back({from, 0});
    damage.lost.back().lengthBytes += plainBytes;
}

EngineResult SealedReader::Result() const {
    if (!HasOpened())
        return readFailed_ ? EngineResult::ReadError : EngineResult::WrongKeyOrCorrupt;
    if (readFailed_) return EngineResult::ReadErrorPartial;
    if (job_.damage.wrongEnd) return EngineResult::CorruptEndPartial;
    return damaged_ == 0 ? EngineResult::Success : DamagedBlocks(damaged_);
}

} // namespace zr5
