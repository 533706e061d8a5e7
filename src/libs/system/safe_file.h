#pragma once

// Files that must not be lost by halves: made beside their place, brought to the disk and renamed
// into it. The results of the cipher are made so, and small files such as keyfiles and setups.

#include "libs/system/clock.h"
#include "libs/system/file_system.h"
#include "libs/system/random.h"
#include "libs/system/secret.h"
#include "libs/system/writeback.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace zr5 {

/// After the name that a result would have had, for what could be recovered of a damaged source.
inline constexpr std::string_view SalvageSuffix = ".partial";

/// Told how an output is made. False from WillMake or WillName ends the work with IoError.
class OutputObserver {
  public:
    virtual ~OutputObserver() = default;
    /// Whether `existing`, which has the output's name already, may be replaced.
    [[nodiscard]] virtual bool MayReplace(const FileInfo& existing) = 0;
    /// Whether the output is going to stand for its source, and so is to have all its attributes.
    [[nodiscard]] virtual bool StandsForSource() const = 0;
    /// A file is about to be made at `partPath`.
    [[nodiscard]] virtual bool WillMake(const std::string& partPath) = 0;
    /// There it is.
    virtual void HasMade() = 0;
    /// It is on the disk and about to be named `path`: the output's path, or a salvage's.
    [[nodiscard]] virtual bool WillName(const FileInfo& info, const std::string& path) = 0;
    /// No file of that length can be.
    virtual void IsTooLarge() = 0;
};

/// What becomes of an output that is not completed.
struct Discarding {
    bool overwrites = false; ///< it holds what nobody else must read
    ProgressFunction progress = {};
};

/// An output under construction: a part beside the output path that takes its name only when it
/// is complete and on the disk. Whatever fails before, the output path stays untouched.
///
/// Its calls return Ok; NoSpace on a full disk; NotPermitted when no file can be made there, or
/// what has the name must not be replaced; IoError for every other failure.
/// Its part is called ".zr5-", 16 hexadecimal digits, ".part".
class PendingOutput {
  public:
    /// `observer` may be null.
    PendingOutput(FileSystem& fileSystem, RandomSource& random, std::string outputPath,
                  OutputObserver* observer = nullptr, Discarding discarding = {});
    /// As Discard, but without progress: it may be because memory is missing.
    ~PendingOutput();
    PendingOutput(const PendingOutput&) = delete;
    PendingOutput& operator=(const PendingOutput&) = delete;

    /// Makes the part and reserves `lengthBytes` for it, on the disk if it is to be overwritten
    /// when discarded. An existing output must be a regular file that may be written.
    [[nodiscard]] FsStatus Begin(std::uint64_t lengthBytes);
    /// The next writing leaves out so many bytes, which read as zeros. Only before the first one.
    [[nodiscard]] FsStatus LeaveGap(std::uint64_t lengthBytes);
    /// Appends.
    [[nodiscard]] FsStatus Write(std::span<const std::byte> bytes);
    /// Gives the part its attributes, brings it to the disk and gives it its name: an output that
    /// was there at `Begin` is replaced in one step, one that appeared since is not. (One that was
    /// replaced stays so when only the flush of its folder fails.) A replaced output's attributes
    /// stay; one that stands for its source gets all of that one's, any other the mode less the
    /// user's mask.
    [[nodiscard]] FsStatus Commit(const OpenFile& source);
    /// As Commit, for what could be recovered of a damaged source: it gets a free name, `base` and
    /// SalvageSuffix, with "-2" to "-999" after it where that is taken, and never replaces
    /// anything.
    [[nodiscard]] FsStatus Salvage(const OpenFile& source, const std::string& base);
    /// As Commit, for a file without a source: only its owner may read it (0600).
    [[nodiscard]] FsStatus CommitPrivate();

    /// Takes back what was not committed.
    void Discard();
    /// After a commit: overwrites what was replaced, unless it has other names or is
    /// longer than anything that is written safely.
    void OverwriteReplaced();

    /// Whether `Begin` found an output, which `Commit` is going to replace.
    [[nodiscard]] bool Replaces() const { return replaced_ != nullptr; }
    [[nodiscard]] std::uint64_t WrittenBytes() const { return writtenBytes_; }

  private:
    [[nodiscard]] std::string NewPartPath();
    [[nodiscard]] FsStatus MakePart();
    [[nodiscard]] FsStatus OfWriting(FsStatus status) const;
    [[nodiscard]] FsStatus TakeAttributes(const OpenFile& source);
    [[nodiscard]] FsStatus Tell(const std::string& path);
    [[nodiscard]] FsStatus TakeSalvageName(const std::string& base);
    [[nodiscard]] FsStatus TakeName();

    FileSystem& fileSystem_;
    RandomSource& random_;
    std::string outputPath_;
    OutputObserver* observer_;
    Discarding discarding_;
    std::string partPath_; ///< empty while there is no such file
    std::unique_ptr<OpenFile> part_;
    std::unique_ptr<OpenFile> replaced_; ///< what had the output's name at `Begin`
    FileInfo replacedInfo_;
    std::uint64_t writtenBytes_ = 0;
    Writeback writeback_;
};

/// Whether a file of this name, without its folder, is called as the parts are.
[[nodiscard]] bool IsPartName(std::string_view name);

enum class IfThere { Replace, Refuse };

/// Writes `content` as a file that only its owner may read (0600) and returns when it is on the
/// disk under its name. On any failure nothing of it is left, and a file that was there is
/// untouched (except that one is already replaced when only the flush of the folder fails). What
/// is left of a failure is overwritten before it goes, and so is a file that was replaced.
/// AlreadyExists when the name is taken and `ifThere` refuses that; otherwise as PendingOutput,
/// with NotPermitted when the name is taken meanwhile.
[[nodiscard]] FsStatus WriteSafely(FileSystem& fileSystem, RandomSource& random,
                                   const std::string& path, std::span<const std::byte> content,
                                   IfThere ifThere);

struct FirstBytes {
    FsStatus status = FsStatus::Ok;
    SecretBytes bytes; ///< `count` of them are the file's, the rest are zero
    std::size_t count = 0;
};

/// Reads the first `most` bytes of a file, or all of a shorter one. `bytes` is always `most`
/// long and holds what was read before a failure.
[[nodiscard]] FirstBytes ReadFirstBytes(FileSystem& fileSystem, const std::string& path,
                                        std::size_t most);

} // namespace zr5
