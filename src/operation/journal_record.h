#pragma once

// What the journal notes of one file, and the bytes in which it does: enough to know the files
// again, no key, and nothing of any content.

#include "libs/cipher/cipher_engine.h"
#include "libs/system/file_system.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zr5 {

/// By what a file is known again: the device may have another number after a restart.
struct FileMark {
    std::uint64_t inode = 0;
    std::uint64_t lengthBytes = 0;
    std::int64_t modifiedNs = 0;
    friend bool operator==(const FileMark&, const FileMark&) = default;
    /// Whether it is the same file, whenever it was written to: the program does so itself, and a
    /// server may set times of its own.
    [[nodiscard]] bool IsSameFileAs(const FileMark& other) const {
        return inode == other.inode && lengthBytes == other.lengthBytes;
    }
};
[[nodiscard]] FileMark MarkOf(const FileInfo& info);
/// Of the regular file at `path` itself, if there is one.
[[nodiscard]] std::optional<FileMark> MarkAt(FileSystem& fileSystem, const std::string& path);

/// How far an operation is: the files with which nothing is left to do, of all.
struct FileTally {
    std::uint64_t done = 0;
    std::uint64_t inAll = 0; ///< 0: not known
    friend bool operator==(const FileTally&, const FileTally&) = default;
};

struct JournalRecord {
    enum class Step : std::uint8_t {
        None,
        Writing,          ///< the result is being made; the input has not been touched
        Replacing,        ///< the result is complete and on the disk; the input goes
        WritingElsewhere, ///< the result is being made in another file; the input stays
    };
    Step step = Step::None;
    Direction direction = Direction::Encrypt; ///< encrypting overwrites the input before deleting
    std::string inputPath;                    ///< the file that is worked on
    std::string outputPath; ///< the complete result; in place until it takes the input's name
    std::string partPath;   ///< the result while it is made
    FileMark input;         ///< as it was read
    FileMark output;        ///< as it was when it took its name; nothing before
    std::uint64_t outputFolder = 0; ///< inode of the folder that the result is made in; 0: unknown
    std::uint64_t outputVolume = 0; ///< of that folder, as FileSystem::VolumeOf tells
    std::string overwriteHead;      ///< the first bytes that the input is overwritten with
    std::string earlierHead; ///< those with which an interrupted mending found it overwritten
    FileTally files;         ///< before this one
    friend bool operator==(const JournalRecord&, const JournalRecord&) = default;
};

/// Whether a record is such as this program writes: full paths that mean no other place than they
/// say, the part called as the program calls its parts and beside the result, and in place the
/// result beside the input. True for one of nothing.
[[nodiscard]] bool IsPlausible(const JournalRecord& record);

/// What every place in a journal begins with.
inline constexpr std::string_view JournalMagic = "ZR5 journal 4\r\n";

/// JournalMagic, `sequence`, the record and a digest of all that.
[[nodiscard]] std::string Encoded(const JournalRecord& record, std::uint64_t sequence);

struct DecodedRecord {
    std::uint64_t sequence = 0; ///< 0: nothing whole was there
    JournalRecord record;
};
/// Takes apart what Encoded joined; whatever follows it is not looked at.
[[nodiscard]] DecodedRecord DecodeRecord(std::string_view place);

} // namespace zr5
