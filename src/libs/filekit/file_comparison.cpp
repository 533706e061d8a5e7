#include "libs/filekit/file_comparison.h"

#include "libs/filekit/file_kit.h"

#include <algorithm>
#include <vector>

namespace zr5 {
namespace {

constexpr std::size_t PieceBytes = std::size_t{1} << 20U;

} // namespace

std::int64_t CompareFiles(FileSystem& fileSystem, const std::string& first,
                          const std::string& second, const ProgressFunction& progress) {
    const OpenResult a = fileSystem.OpenForReading(first);
    if (a.status != FsStatus::Ok) return compare_code::FirstNotOpened;
    const OpenResult b = fileSystem.OpenForReading(second);
    if (b.status != FsStatus::Ok) return compare_code::SecondNotOpened;

    const auto info = a.file->Info();
    const std::uint64_t total = info ? info->lengthBytes : 0;
    std::vector<std::byte> pieceA(PieceBytes);
    std::vector<std::byte> pieceB(PieceBytes);
    for (std::int64_t compared = 0;;) {
        const ReadResult gotA = a.file->Read(pieceA);
        if (gotA.status != FsStatus::Ok) return compare_code::FirstNotRead;
        const ReadResult gotB = b.file->Read(pieceB);
        if (gotB.status != FsStatus::Ok) return compare_code::SecondNotRead;
        if (compared == 0 && gotA.count == 0) return compare_code::FirstEmpty;
        if (compared == 0 && gotB.count == 0) return compare_code::SecondEmpty;

        const std::size_t common = std::min(gotA.count, gotB.count);
        const auto end = pieceA.begin() + static_cast<std::ptrdiff_t>(common);
        const auto same = std::mismatch(pieceA.begin(), end, pieceB.begin()).first;
        compared += same - pieceA.begin();
        if (same != end || gotA.count != gotB.count) return compared + 1;
        if (common == 0) return compare_code::Identical;
        if (progress) progress(static_cast<std::uint64_t>(compared), total);
    }
}

} // namespace zr5
