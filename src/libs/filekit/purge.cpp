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

std::int32_t Overwrite(OpenFile& file, const std::optional<FileInfo>& info, RandomSource& random,
                       const PurgeHooks& hooks) {
    if (!info) return purge_code::NotOpened;
    if (info->linkCount > 1) return purge_code::HasSeveralNames;
    std::vector<std::byte> piece(
        static_cast<std::size_t>(std::min<std::uint64_t>(info->lengthBytes, PieceBytes)));
    Writeback writeback;
    for (std::uint64_t left = info->lengthBytes; left != 0;) {
        const auto part = std::span(piece).first(
            static_cast<std::size_t>(std::min<std::uint64_t>(left, piece.size())));
        FillPiece(random, part);
        if (left == info->lengthBytes && hooks.beforeOverwriting &&
            !hooks.beforeOverwriting(*info,
                                     part.first(std::min(part.size(), OverwriteHeadBytes)))) {
            return purge_code::NotOverwritten;
        }
        if (file.Write(part) != FsStatus::Ok) return purge_code::NotOverwritten;
        writeback.Wrote(file, part.size());
        left -= part.size();
        if (hooks.progress) hooks.progress(info->lengthBytes - left, info->lengthBytes);
    }
    return file.Flush() == FsStatus::Ok ? purge_code::Done : purge_code::NotOverwritten;
}

} // namespace

std::int32_t PurgeFile(FileSystem& fileSystem, RandomSource& random, const std::string& path,
                       bool overwrite, bool remove, const PurgeHooks& hooks) {
    if (overwrite) {
        const OpenResult opened = fileSystem.OpenForPurging(path);
        if (opened.status != FsStatus::Ok) return purge_code::NotOpened;
        const auto info = opened.file->Info();
        const std::int32_t code = Overwrite(*opened.file, info, random, hooks);
        if (code != purge_code::Done || !remove) return code;
        const auto named = fileSystem.Info(path);
        if (!named || named->identity != info->identity ||
            named->lengthBytes != info->lengthBytes) {
            return purge_code::NotRemoved;
        }
    }
    if (remove && fileSystem.Remove(path) != FsStatus::Ok) return purge_code::NotRemoved;
    return purge_code::Done;
}

} // namespace zr5
