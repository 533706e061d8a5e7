#include "libs/cipher/sealed_reader.h"

#include <algorithm>
#include <array>

namespace zr5 {

EngineResult SealedReader::ReadHeader(std::uint64_t lengthBytes) {
    layout_ = LayoutOf(lengthBytes);
    damage_.endIsWrong = layout_.hasRemainder;
    if (layout_.blocks == 0) return EngineResult::WrongKeyOrCorrupt;
    std::array<std::byte, HeaderBytes> header{};
    const ReadResult got = file_.Read(header);
    if (got.status != FsStatus::Ok || got.count != header.size()) return EngineResult::ReadError;
    const OpenedHeader opened = OpenHeader(header, job_.masters);
    if (opened.result == EngineResult::Success) cipher_.emplace(opened.blockKey);
    return opened.result;
}

SealedReader::Piece SealedReader::Next() {
    const auto sealed = job_.sealedBuffer.first(static_cast<std::size_t>(
        std::min<std::uint64_t>(SealedPieceBytes, SealedBytes() - readBytes_)));
    const ReadResult got = file_.Read(sealed);
    if (got.status != FsStatus::Ok || got.count != sealed.size()) {
        return {OpenPiece(sealed.first(got.count - got.count % SealedBlockBytes)), true};
    }
    const auto plain = OpenPiece(sealed);
    // A long file must not drive what others have out of the system's memory.
    if (sealed.size() != SealedBytes()) file_.ForgetCached(ReadBytes(), sealed.size());
    readBytes_ += sealed.size();
    return {plain, false};
}

std::span<const std::byte> SealedReader::OpenPiece(std::span<const std::byte> sealed) {
    std::size_t filled = 0;
    for (std::size_t at = 0; at < sealed.size(); at += SealedBlockBytes) {
        const auto block = sealed.subspan(at, std::min(SealedBlockBytes, sealed.size() - at));
        OpenBlock(block, job_.plainBuffer.subspan(filled, block.size() - TagBytes));
        filled += block.size() - TagBytes;
    }
    return job_.plainBuffer.first(filled);
}

/// A block that opens only with the other mark, last or not, is genuine, but the file does not
/// end where it should.
void SealedReader::OpenBlock(std::span<const std::byte> sealed, std::span<std::byte> plain) {
    const bool isLast = number_ + 1 == layout_.blocks;
    if (!cipher_->Open(number_, isLast, sealed, plain)) {
        if (cipher_->Open(number_, !isLast, sealed, plain)) {
            damage_.endIsWrong = true;
        } else {
            ++damage_.blocks;
            damage_.lastIsDamaged = isLast;
        }
    }
    ++number_;
}

} // namespace zr5
