#pragma once

// The eight calls of the file kit: comparing, measuring, purging, new names, program texts.

#include "libs/system/file_system.h"
#include "libs/system/progress.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace zr5 {

namespace compare_code {
inline constexpr std::int64_t Identical = -1;
inline constexpr std::int64_t FirstNotOpened = -11;
inline constexpr std::int64_t SecondNotOpened = -12;
inline constexpr std::int64_t FirstNotRead = -21;
inline constexpr std::int64_t SecondNotRead = -22;
inline constexpr std::int64_t FirstEmpty = -31;
inline constexpr std::int64_t SecondEmpty = -32;
} // namespace compare_code

/// `fr` of a file that is too small to have a randomness value.
inline constexpr double RandomnessTooSmall = -15.0;
/// `fr` of a file that cannot be read; any value of -11.0 or less is a failure.
inline constexpr double RandomnessUnreadable = -20.0;
inline constexpr double RandomnessFailureLimit = -11.0;
/// `fr` of a file whose measuring was ended.
inline constexpr double RandomnessStopped = -30.0;

/// `purge_file`: below this the purge failed.
inline constexpr std::int32_t PurgeFailureLimit = -3;
/// First option of `purge_file`: overwrite before deleting, or only delete.
inline constexpr std::int32_t PurgeOverwrite = 1000;
inline constexpr std::int32_t PurgeDeleteOnly = 0;

/// Length of the buffer that `gt` fills.
inline constexpr std::int32_t ProgramTextBufferLength = 1024;

/// Told which file is going to be overwritten, and with what. False: it must not be.
using BeforeOverwriting =
    std::function<bool(const FileInfo& file, std::span<const std::byte> firstBytes)>;

class FileKit {
  public:
    virtual ~FileKit() = default;

    /// -1 identical; otherwise the position, from 1, of the first byte in which the files
    /// differ (a file that ends early differs at the next position); or a compare_code.
    [[nodiscard]] virtual std::int64_t compare_files(const std::string& first,
                                                     const std::string& second) = 0;
    /// The randomness of a file, measured over `sampleBytes` bytes in its middle, where no header
    /// stands (0: over all): 1 - 1.45 D, D being the largest shortfall from 8, in bits a byte, of
    /// the Shannon entropy of the bytes and of their differences at distances 1, 2, 3, 4 and 8.
    /// Above 0 for encrypted or compressed content, at most 1. RandomnessTooSmall below 1024
    /// bytes.
    [[nodiscard]] virtual double fr(const std::string& path, std::int32_t sampleBytes) = 0;
    /// The randomness of the first `length` bytes: Shannon entropy divided by
    /// log2(min(length, 256)); 0 to 1. `flag` is not used.
    [[nodiscard]] virtual double randomness_measure(std::string_view bytes, std::int32_t length,
                                                    std::int16_t flag) = 0;
    /// Overwrites the whole file once with random bytes, flushes it to the disk and deletes it.
    /// `overwrite` 0 leaves the overwriting out, `remove` false the deleting; `reserved` is not
    /// used. A file with several names is never overwritten, and nothing is deleted but what was
    /// overwritten. Below PurgeFailureLimit: failed.
    [[nodiscard]] virtual std::int32_t purge_file(const std::string& path, std::int32_t overwrite,
                                                  bool remove, bool reserved) = 0;
    /// 1 when a new file of this name can be made, else 0. Makes nothing.
    [[nodiscard]] virtual std::int32_t new_file_creatable(const std::string& path) = 0;
    /// Turns `path` into a name that is free beside it: with ".zr5" appended, then ".zr5-2" to
    /// ".zr5-999"; where the file system would find that too long, the end of the name gives
    /// way. 0 when one was formed, else `path` stays.
    [[nodiscard]] virtual std::int32_t new_filepath_extension(std::string& path) = 0;
    /// Puts program text `number` into `buffer` (`bufferLength` is ProgramTextBufferLength,
    /// `one` always 1, `language` 0). Returns its length in bytes; 0 or less: no such text.
    [[nodiscard]] virtual std::int32_t gt(std::int16_t number, std::int16_t language,
                                          std::span<char> buffer, std::int32_t bufferLength,
                                          std::int32_t one) = 0;
    /// Loads the program texts from a file (docs/program-texts.md). Above 0: how many; 0 or
    /// less: a failure code (`LoadProgramText` in util has the words).
    [[nodiscard]] virtual std::int32_t lt(const std::string& path, std::int32_t reserved) = 0;

    /// Hands in what is asked before the first byte of a file is overwritten; false leaves the
    /// file as it is. An empty function for nothing.
    virtual void SetBeforeOverwriting(BeforeOverwriting beforeOverwriting) = 0;
    /// Hands in what is called after each piece while a file is overwritten or compared, or
    /// measured over all; an empty function for nothing.
    virtual void SetProgress(ProgressFunction progress) = 0;
    /// To be called from the progress function: `fr` ends and returns RandomnessStopped.
    virtual void StopMeasuring() = 0;
};

} // namespace zr5
