#pragma once

// The calls of the file kit: comparing, measuring, purging, new names, program texts.

#include "libs/system/clock.h"
#include "libs/system/file_system.h"
#include "libs/system/random.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace zr5 {

enum class CompareOutcome {
    Identical,
    Different,
    FirstNotOpened,
    SecondNotOpened,
    FirstNotRead,
    SecondNotRead,
    FirstEmpty,
    SecondEmpty,
};

struct Comparison {
    CompareOutcome outcome = CompareOutcome::Identical;
    /// When different: the place, from 1, of the first byte that differs; a file that ends early
    /// differs at the next place.
    std::uint64_t firstDifference = 0;
    friend bool operator==(const Comparison&, const Comparison&) = default;
};

/// `fr` of a file that is too small to have a randomness value.
inline constexpr double RandomnessTooSmall = -15.0;
/// `fr` of a file that cannot be read; any value of -11.0 or less is a failure.
inline constexpr double RandomnessUnreadable = -20.0;
inline constexpr double RandomnessFailureLimit = -11.0;
/// `fr` of a file whose measuring was ended.
inline constexpr double RandomnessStopped = -30.0;

/// Told of each piece of a file that is measured; false ends the measuring.
using MeasureProgress = std::function<bool(std::uint64_t doneBytes, std::uint64_t totalBytes)>;

enum class PurgeMode { OverwriteAndDelete, DeleteOnly };

enum class PurgeResult {
    Done,
    NotOverwritten, ///< it is gone, but not all of its content was overwritten first
    // Nothing was done to the file:
    NotOpened,
    HasSeveralNames, ///< the others would lose their content with it
    NotRemovable,    ///< its folder, or what it is marked as, does not let it go
    NoRoom,          ///< on a disk that writes elsewhere than where the old content stands
    NotAllowed,      ///< `PurgeHooks::beforeOverwriting` said no
    // It was overwritten, unless it was to be deleted only:
    NotRemoved,
    NameTaken, ///< by another file, which was left alone
};

/// Whether the file has gone.
[[nodiscard]] constexpr bool HasGone(PurgeResult result) noexcept {
    return result == PurgeResult::Done || result == PurgeResult::NotOverwritten;
}

/// Told which file is going to be overwritten, and with what. False: it must not be.
using BeforeOverwriting =
    std::function<bool(const FileInfo& file, std::span<const std::byte> firstBytes)>;
/// Who is told while a file is purged; both may be left out.
struct PurgeHooks {
    ProgressFunction progress = {};           ///< called after each piece
    BeforeOverwriting beforeOverwriting = {}; ///< asked before the first
};

/// Why a file of program texts was not loaded.
enum class TextFileStatus {
    Loaded,
    NothingRead,
    NotOpened,
    TooMuchText,
    NotRecovered,
    EmptyFile,
    NotRead,
    OutOfMemory,
    MissingString, ///< in a line, as the next two
    StringTooLong,
    Duplicate,
};

struct TextFileResult {
    TextFileStatus status = TextFileStatus::Loaded;
    int line = 0; ///< the line at fault, from 1, where one is
    friend bool operator==(const TextFileResult&, const TextFileResult&) = default;
};

class FileKit {
  public:
    virtual ~FileKit() = default;

    /// Finds the first byte in which two files differ. `progress` (it may be empty) is told after
    /// each piece of the first file.
    [[nodiscard]] virtual Comparison compare_files(const std::string& first,
                                                   const std::string& second,
                                                   const ProgressFunction& progress) = 0;
    /// The randomness of a file, measured over `sampleBytes` bytes in its middle, where no header
    /// stands (0: over all): 1 - 1.45 D, D being the largest shortfall from 8, in bits a byte, of
    /// the Shannon entropy of the bytes and of their differences at distances 1, 2, 3, 4 and 8.
    /// Above 0 for encrypted or compressed content, at most 1. RandomnessTooSmall below 1024
    /// bytes. `progress` may be empty.
    [[nodiscard]] virtual double fr(const std::string& path, std::uint64_t sampleBytes,
                                    const MeasureProgress& progress) = 0;
    /// The randomness of a short buffer: Shannon entropy divided by log2(min(length, 256)); 0 to 1.
    [[nodiscard]] virtual double randomness_measure(std::span<const std::byte> bytes) = 0;
    /// Overwrites the whole file once with random bytes (Overwriting), brings that to the disk and
    /// deletes the file; or only deletes it. Before the first byte is overwritten it is made sure
    /// that the file can go; from then on it goes, whatever fails, so that no half-destroyed file
    /// keeps its name. A file with several names is never overwritten, and nothing is deleted but
    /// what was overwritten.
    [[nodiscard]] virtual PurgeResult purge_file(const std::string& path, PurgeMode mode,
                                                 const PurgeHooks& hooks) = 0;
    /// Whether a new file of this name can be made. Makes nothing.
    [[nodiscard]] virtual bool new_file_creatable(const std::string& path) = 0;
    /// A name that is free beside `path`: with ".zr5-new" appended, then ".zr5-new-2" to
    /// ".zr5-new-999"; where the file system would find that too long, the end of the name gives
    /// way. nullopt when all are taken.
    [[nodiscard]] virtual std::optional<std::string>
    new_filepath_extension(const std::string& path) = 0;
    /// The program text of this number.
    [[nodiscard]] virtual std::optional<std::string> gt(std::int16_t number) = 0;
    /// Loads the program texts from a file (docs/program-texts.md). After a failure those that
    /// were loaded before stay.
    [[nodiscard]] virtual TextFileResult lt(const std::string& path) = 0;
};

/// The file kit on the machine's own files. It keeps references to both.
[[nodiscard]] std::unique_ptr<FileKit> MakeFileKit(FileSystem& fileSystem, RandomSource& random);

} // namespace zr5
