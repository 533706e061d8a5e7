#include "libs/filekit/purge.h"

#include "libs/system/writeback.h"

#include <algorithm>
#include <array>
#include <sodium.h>
#include <vector>

namespace zr5 {
namespace {

constexpr std::size_t PieceBytes = std::size_t{1} << 20U;

/// Random bytes at the speed of a disk: a stream cipher under a key from the random source.
void FillPiece(RandomSource& random, std::span<std::byte> piece) {
    std::array<std::byte, randombytes_SEEDBYTES> seed{};
    random.Fill(seed);
    randombytes_buf_deterministic(piece.data(), piece.size(),
                                  reinterpret_cast<const unsigned char*>(seed.data()));
}

PurgeResult Overwrite(OpenFile& file, const std::optional<FileInfo>& info, RandomSource& random,
                      const PurgeHooks& hooks) {
    if (!info) return PurgeResult::NotOpened;
    if (info->linkCount > 1) return PurgeResult::HasSeveralNames;
    std::vector<std::byte> piece(
        static_cast<std::size_t>(std::min<std::uint64_t>(info->lengthBytes, PieceBytes)));
    FillPiece(random, piece);
    const auto head = std::span(piece).first(std::min(piece.size(), OverwriteHeadBytes));
    if (hooks.beforeOverwriting && !hooks.beforeOverwriting(*info, head)) {
        return PurgeResult::NotOverwritten;
    }
    Writeback writeback;
    for (std::uint64_t left = info->lengthBytes; left != 0;) {
        const auto part = std::span(piece).first(
            static_cast<std::size_t>(std::min<std::uint64_t>(left, piece.size())));
        if (left != info->lengthBytes) FillPiece(random, part);
        if (file.Write(part) != FsStatus::Ok) return PurgeResult::NotOverwritten;
        writeback.Wrote(file, part.size());
        left -= part.size();
        if (hooks.progress) hooks.progress(info->lengthBytes - left, info->lengthBytes);
    }
    return file.Flush() == FsStatus::Ok ? PurgeResult::Done : PurgeResult::NotOverwritten;
}

} // namespace

PurgeResult PurgeFile(FileSystem& fileSystem, RandomSource& random, const std::string& path,
                      PurgeMode mode, const PurgeHooks& hooks) {
    if (mode == PurgeMode::OverwriteAndDelete) {
        const OpenResult opened = fileSystem.OpenForPurging(path);
        if (opened.status != FsStatus::Ok) return PurgeResult::NotOpened;
        const auto info = opened.file->Info();
        const PurgeResult result = Overwrite(*opened.file, info, random, hooks);
        if (result != PurgeResult::Done) return result;
        const auto named = fileSystem.Info(path);
        if (!named || named->identity != info->identity ||
            named->lengthBytes != info->lengthBytes) {
            return PurgeResult::NotRemoved;
        }
    }
    return fileSystem.Remove(path) == FsStatus::Ok ? PurgeResult::Done : PurgeResult::NotRemoved;
}

} // namespace zr5
