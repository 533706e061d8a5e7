#include "libs/filekit/zr5_file_kit.h"

#include "libs/filekit/file_comparison.h"
#include "libs/filekit/program_text_file.h"
#include "libs/filekit/purge.h"
#include "libs/filekit/randomness.h"

#include <algorithm>
#include <cassert>
#include <vector>

namespace zr5 {
namespace {

constexpr std::uint64_t LeastMeasuredBytes = 1024;
constexpr std::size_t MeasuredPieceBytes = std::size_t{1} << 20U;
constexpr int LastNameNumber = 999;

bool IsContinuationByte(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
}

/// `name` cut to `longest` bytes, never inside a UTF-8 sequence. Bytes that are no UTF-8 are cut
/// anywhere.
std::string CutTo(const std::string& name, std::size_t longest) {
    if (name.size() <= longest) return name;
    constexpr std::size_t MostContinuationBytes = 3;
    std::size_t end = longest;
    while (end > 0 && longest - end <= MostContinuationBytes && IsContinuationByte(name[end])) {
        --end;
    }
    return name.substr(0, longest - end <= MostContinuationBytes ? end : longest);
}

class Zr5FileKit final : public FileKit {
  public:
    Zr5FileKit(FileSystem& fileSystem, RandomSource& random)
        : fileSystem_(fileSystem), random_(random) {}

    std::int64_t compare_files(const std::string& first, const std::string& second) override {
        return CompareFiles(fileSystem_, first, second, progress_);
    }

    double fr(const std::string& path, std::int32_t sampleBytes) override {
        const OpenResult opened = fileSystem_.OpenForReading(path);
        if (opened.status != FsStatus::Ok) return RandomnessUnreadable;
        const auto info = opened.file->Info();
        if (!info) return RandomnessUnreadable;
        if (info->lengthBytes < LeastMeasuredBytes) return RandomnessTooSmall;
        const std::uint64_t sample =
            sampleBytes > 0 ? std::min(static_cast<std::uint64_t>(sampleBytes), info->lengthBytes)
                            : info->lengthBytes;
        if (opened.file->MoveTo((info->lengthBytes - sample) / 2) != FsStatus::Ok) {
            return RandomnessUnreadable;
        }
        std::vector<std::byte> piece(
            static_cast<std::size_t>(std::min<std::uint64_t>(sample, MeasuredPieceBytes)));
        RandomnessMeter meter;
        stopsMeasuring_ = false;
        for (std::uint64_t left = sample; left != 0;) {
            const ReadResult got = opened.file->Read(std::span(piece).first(
                static_cast<std::size_t>(std::min<std::uint64_t>(left, piece.size()))));
            if (got.status != FsStatus::Ok) return RandomnessUnreadable;
            if (got.count == 0) break;
            meter.Add(std::span(piece).first(got.count));
            left -= got.count;
            if (progress_ && sampleBytes <= 0) progress_(sample - left, sample);
            if (stopsMeasuring_) return RandomnessStopped;
        }
        return meter.Value();
    }

    double randomness_measure(std::string_view bytes, std::int32_t length,
                              std::int16_t /*flag*/) override {
        assert(length >= 0);
        return BufferRandomness(
            std::as_bytes(std::span(bytes.substr(0, static_cast<std::size_t>(length)))));
    }

    std::int32_t purge_file(const std::string& path, std::int32_t overwrite, bool remove,
                            bool /*reserved*/) override {
        return PurgeFile(fileSystem_, random_, path, overwrite != PurgeDeleteOnly, remove,
                         {progress_, beforeOverwriting_});
    }

    std::int32_t new_file_creatable(const std::string& path) override {
        return !fileSystem_.Info(path) && fileSystem_.FolderAcceptsFiles(path) ? 1 : 0;
    }

    std::int32_t new_filepath_extension(std::string& path) override {
        const std::size_t nameAt = path.rfind('/') + 1;
        const std::string folder = path.substr(0, nameAt);
        const std::string name = path.substr(nameAt);
        const std::size_t longest = fileSystem_.LongestName(path);
        for (int number = 1; number <= LastNameNumber; ++number) {
            const std::string suffix =
                number == 1 ? std::string(".zr5") : ".zr5-" + std::to_string(number);
            std::string candidate = folder;
            candidate += CutTo(name, longest - suffix.size());
            candidate += suffix;
            if (!fileSystem_.Info(candidate)) {
                path = std::move(candidate);
                return 0;
            }
        }
        return 1;
    }

    std::int32_t gt(std::int16_t number, std::int16_t /*language*/, std::span<char> buffer,
                    std::int32_t bufferLength, std::int32_t /*one*/) override {
        assert(bufferLength >= 0 && static_cast<std::size_t>(bufferLength) <= buffer.size());
        const auto text = texts_.find(number);
        if (text == texts_.end()) return 0;
        const std::size_t count =
            std::min(text->second.size(), static_cast<std::size_t>(bufferLength));
        std::copy_n(text->second.begin(), count, buffer.begin());
        return static_cast<std::int32_t>(count);
    }

    std::int32_t lt(const std::string& path, std::int32_t /*reserved*/) override {
        return ReadProgramTextFile(fileSystem_, path, texts_);
    }

    void SetBeforeOverwriting(BeforeOverwriting beforeOverwriting) override {
        beforeOverwriting_ = std::move(beforeOverwriting);
    }
    void SetProgress(ProgressFunction progress) override { progress_ = std::move(progress); }
    void StopMeasuring() override { stopsMeasuring_ = true; }

  private:
    FileSystem& fileSystem_;
    RandomSource& random_;
    ProgramTextTable texts_;
    ProgressFunction progress_;
    BeforeOverwriting beforeOverwriting_;
    bool stopsMeasuring_ = false;
};

} // namespace

std::unique_ptr<FileKit> MakeFileKit(FileSystem& fileSystem, RandomSource& random) {
    return std::make_unique<Zr5FileKit>(fileSystem, random);
}

} // namespace zr5
