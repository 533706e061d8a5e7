#include "libs/system/overwriting.h"

#include "libs/system/writeback.h"

#include <algorithm>
#include <array>
#include <sodium.h>

namespace zr5 {
namespace {

/// Random bytes at the speed of a disk: a stream cipher under a key from the random source.
void FillPiece(RandomSource& random, std::span<std::byte> piece) {
    if (piece.empty()) return;
    std::array<std::byte, randombytes_SEEDBYTES> seed{};
    random.Fill(seed);
    randombytes_buf_deterministic(piece.data(), piece.size(),
                                  reinterpret_cast<const unsigned char*>(seed.data()));
}

} // namespace

Overwriting::Overwriting(RandomSource& random, std::uint64_t lengthBytes)
    : random_(random),
      lengthBytes_(lengthBytes),
      piece_(std::span(buffer_).first(
          static_cast<std::size_t>(std::min<std::uint64_t>(lengthBytes, PieceBytes)))) {
    FillPiece(random_, piece_);
}

std::span<const std::byte> Overwriting::Head() const {
    return piece_.first(std::min(piece_.size(), HeadBytes));
}

/// Also where the file begins with a hole: by its head it is known again.
FsStatus Overwriting::WriteHead(OpenFile& file) {
    const FsStatus status = file.MoveTo(0);
    return status == FsStatus::Ok ? file.Write(Head()) : status;
}

FsStatus Overwriting::WriteRange(OpenFile& file, ByteRange range,
                                 const ProgressFunction& progress) {
    Writeback writeback(range.offset);
    const std::uint64_t end = range.offset + range.lengthBytes;
    if (const FsStatus status = file.MoveTo(range.offset); status != FsStatus::Ok) return status;
    for (std::uint64_t at = range.offset; at < end;) {
        const auto part = piece_.first(
            static_cast<std::size_t>(std::min<std::uint64_t>(end - at, piece_.size())));
        FillPiece(random_, part);
        if (const FsStatus status = file.Write(part); status != FsStatus::Ok) return status;
        writeback.Wrote(file, part.size());
        at += part.size();
        if (progress) progress(at, lengthBytes_);
    }
    return FsStatus::Ok;
}

FsStatus Overwriting::Run(OpenFile& file, const ProgressFunction& progress) {
    FsStatus status = WriteHead(file);
    for (std::uint64_t at = Head().size(); status == FsStatus::Ok && at < lengthBytes_;) {
        ByteRange range = file.NextData(at);
        if (range.lengthBytes == 0 || range.offset >= lengthBytes_) break;
        range.lengthBytes = std::min(range.lengthBytes, lengthBytes_ - range.offset);
        status = WriteRange(file, range, progress);
        at = range.offset + range.lengthBytes;
    }
    return status == FsStatus::Ok ? file.Flush() : status;
}

} // namespace zr5
