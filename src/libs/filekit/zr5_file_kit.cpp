#include "libs/filekit/file_kit.h"
#include "libs/filekit/program_text_file.h"
#include "libs/filekit/purge.h"
#include "libs/filekit/randomness.h"
#include "libs/system/paths.h"

#include <algorithm>
#include <vector>

namespace zr5 {
namespace {

constexpr std::size_t PieceBytes = std::size_t{1} << 20U;
constexpr std::uint64_t LeastMeasuredBytes = 1024;
constexpr int LastNameNumber = 999;

Comparison CompareFiles(FileSystem& fileSystem, const std::string& first, const std::string& second,
                        const ProgressFunction& progress) {
    const OpenResult a = fileSystem.OpenForReading(first);
    if (a.status != FsStatus::Ok) return {CompareOutcome::FirstNotOpened};
    const OpenResult b = fileSystem.OpenForReading(second);
    if (b.status != FsStatus::Ok) return {CompareOutcome::SecondNotOpened};
    const auto info = a.file->Info();
    const std::uint64_t total = info ? info->lengthBytes : 0;
    std::vector<std::byte> pieceA(PieceBytes);
    std::vector<std::byte> pieceB(PieceBytes);
    for (std::uint64_t compared = 0;;) {
        const ReadResult gotA = a.file->Read(pieceA);
        if (gotA.status != FsStatus::Ok) return {CompareOutcome::FirstNotRead};
        const ReadResult gotB = b.file->Read(pieceB);
        if (gotB.status != FsStatus::Ok) return {CompareOutcome::SecondNotRead};
        if (compared == 0 && gotA.count == 0) return {CompareOutcome::FirstEmpty};
        if (compared == 0 && gotB.count == 0) return {CompareOutcome::SecondEmpty};
        const std::size_t common = std::min(gotA.count, gotB.count);
        const auto end = pieceA.begin() + static_cast<std::ptrdiff_t>(common);
        const auto same = std::mismatch(pieceA.begin(), end, pieceB.begin()).first;
        compared += static_cast<std::uint64_t>(same - pieceA.begin());
        if (same != end || gotA.count != gotB.count) {
            return {CompareOutcome::Different, compared + 1};
        }
        if (common == 0) return {CompareOutcome::Identical};
        if (progress) progress(compared, total);
    }
}

double MeasureFile(FileSystem& fileSystem, const std::string& path, std::uint64_t sampleBytes,
                   const MeasureProgress& progress) {
    const OpenResult opened = fileSystem.OpenForReading(path);
    if (opened.status != FsStatus::Ok) return RandomnessUnreadable;
    const auto info = opened.file->Info();
    if (!info) return RandomnessUnreadable;
    if (info->lengthBytes < LeastMeasuredBytes) return RandomnessTooSmall;
    const std::uint64_t sample =
        sampleBytes > 0 ? std::min(sampleBytes, info->lengthBytes) : info->lengthBytes;
    if (opened.file->MoveTo((info->lengthBytes - sample) / 2) != FsStatus::Ok) {
        return RandomnessUnreadable;
    }
    std::vector<std::byte> piece(
        static_cast<std::size_t>(std::min<std::uint64_t>(sample, PieceBytes)));
    RandomnessMeter meter;
    for (std::uint64_t left = sample; left != 0;) {
        const ReadResult got = opened.file->Read(std::span(piece).first(
            static_cast<std::size_t>(std::min<std::uint64_t>(left, piece.size()))));
        if (got.status != FsStatus::Ok) return RandomnessUnreadable;
        if (got.count == 0) break;
        meter.Add(std::span(piece).first(got.count));
        left -= got.count;
        if (progress && !progress(sample - left, sample)) return RandomnessStopped;
    }
    return meter.Value();
}

class Zr5FileKit final : public FileKit {
  public:
    Zr5FileKit(FileSystem& fileSystem, RandomSource& random)
        : fileSystem_(fileSystem), random_(random) {}

    Comparison compare_files(const std::string& first, const std::string& second,
                             const ProgressFunction& progress) override {
        return CompareFiles(fileSystem_, first, second, progress);
    }

    double fr(const std::string& path, std::uint64_t sampleBytes,
              const MeasureProgress& progress) override {
        return MeasureFile(fileSystem_, path, sampleBytes, progress);
    }

    double randomness_measure(std::span<const std::byte> bytes) override {
        return BufferRandomness(bytes);
    }

    PurgeResult purge_file(const std::string& path, PurgeMode mode,
                           const PurgeHooks& hooks) override {
        return PurgeFile(fileSystem_, random_, path, mode, hooks);
    }

    bool new_file_creatable(const std::string& path) override {
        return !fileSystem_.Info(path) && fileSystem_.FolderAcceptsFiles(path);
    }

    std::optional<std::string> new_filepath_extension(const std::string& path) override {
        for (int number = 1; number <= LastNameNumber; ++number) {
            std::string candidate = NumberedName(fileSystem_, path, ".zr5-new", number);
            if (!fileSystem_.Info(candidate)) return candidate;
        }
        return std::nullopt;
    }

    std::optional<std::string> gt(std::int16_t number) override {
        const auto text = texts_.find(number);
        if (text == texts_.end()) return std::nullopt;
        return text->second;
    }

    TextFileResult lt(const std::string& path) override {
        return ReadProgramTextFile(fileSystem_, path, texts_);
    }

  private:
    FileSystem& fileSystem_;
    RandomSource& random_;
    ProgramTextTable texts_;
};

} // namespace

std::unique_ptr<FileKit> MakeFileKit(FileSystem& fileSystem, RandomSource& random) {
    return std::make_unique<Zr5FileKit>(fileSystem, random);
}

} // namespace zr5
