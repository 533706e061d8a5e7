#pragma once

// Everything that touches the disk goes through this interface, so that a test can fail any
// call of any kind, or end the program there.

#include "libs/system/disk_kind.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zr5 {

/// Paths are the native bytes of the file system's names, never converted.
enum class FsStatus {
    Ok,
    NotFound,
    NotPermitted,
    AlreadyExists,
    NoSpace,
    TooLarge, ///< for one file of this disk, or by a limit of this process
    NotRegularFile,
    IoError,
};

enum class FileKind { Regular, Folder, Link, Special };

/// Names a file independently of its path: two paths with equal identities are one file.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

struct FileInfo {
    FileKind kind = FileKind::Regular;
    std::uint64_t lengthBytes = 0;
    std::uint64_t linkCount = 1;
    FileIdentity identity;
    std::int64_t modifiedNs = 0; ///< time of the last change of the content
    std::int64_t changedNs = 0;  ///< of the last change of anything; nobody can set it back
    /// Whether it belongs to the user whose rights this process has, also where those are the
    /// administrator's.
    bool isOwnedByUser = true;
    /// Whether its mode, or its access list, lets somebody else than its owner (and the
    /// administrator) write to it; of a folder: make, rename and remove what is in it.
    bool isWritableByOthers = false;
};

/// A stretch of a file.
struct ByteRange {
    std::uint64_t offset = 0;
    std::uint64_t lengthBytes = 0;
};

/// One name in a folder; what a link leads to is not asked.
struct FolderEntry {
    std::string name;
    FileKind kind = FileKind::Regular;
};

struct ReadResult {
    FsStatus status = FsStatus::Ok;
    std::size_t count = 0; ///< bytes read; less than asked for only at the end or on failure
};

/// One open regular file with a position that reading and writing move on.
/// It is closed when destroyed.
class OpenFile {
  public:
    virtual ~OpenFile() = default;
    [[nodiscard]] virtual ReadResult Read(std::span<std::byte> into) = 0;
    [[nodiscard]] virtual FsStatus Write(std::span<const std::byte> from) = 0;
    /// Makes sure that `lengthBytes` fit on the disk before any is written. NoSpace if not; Ok
    /// also where the file system cannot tell.
    [[nodiscard]] virtual FsStatus Reserve(std::uint64_t lengthBytes) = 0;
    [[nodiscard]] virtual FsStatus Truncate(std::uint64_t lengthBytes) = 0;
    /// The next reading or writing begins at `offset`.
    [[nodiscard]] virtual FsStatus MoveTo(std::uint64_t offset) = 0;
    /// Returns when content, length and attributes are on the disk.
    [[nodiscard]] virtual FsStatus Flush() = 0;
    /// As Flush, but for the time of the last change and what else is not needed for reading.
    [[nodiscard]] virtual FsStatus FlushContent() = 0;
    /// Lets go of what the system keeps in memory of `lengthBytes` from `offset` on (0: of all from
    /// there on) that are on the disk, so that the next reading comes from there. A hint.
    virtual void ForgetCached(std::uint64_t offset, std::uint64_t lengthBytes) = 0;
    [[nodiscard]] virtual std::optional<FileInfo> Info() const = 0;
    /// Gives this file the owner (where permitted), mode, access lists and extended attributes
    /// of `source`. What the file system does not know or permit is left out; NoSpace and
    /// IoError are reported.
    [[nodiscard]] virtual FsStatus CopyAttributesFrom(const OpenFile& source) = 0;
    /// Gives this file the mode of `source`, less what the user's mask keeps from new files.
    [[nodiscard]] virtual FsStatus TakeModeFrom(const OpenFile& source) = 0;
    /// The first stretch at or after `offset` that takes room on the disk; what lies between such
    /// stretches are holes. Empty when there is no more. A file system that knows no holes gives
    /// all the rest, and so does a file that takes room for its whole length, written or reserved.
    [[nodiscard]] virtual ByteRange NextData(std::uint64_t offset) const = 0;
    /// Whether the content can be overwritten for all that is known of the room: where the file
    /// system writes elsewhere than where the old content stands (copy on write), so much must be
    /// free as the content takes.
    [[nodiscard]] virtual bool HasRoomToOverwrite() const = 0;
    /// Says that `lengthBytes` from `offset` on were written and are wanted on the disk soon.
    /// A hint: nothing waits for it.
    virtual void StartWriteback(std::uint64_t offset, std::uint64_t lengthBytes) = 0;
    /// Returns when these bytes, of which StartWriteback was told, are no longer waiting.
    virtual void AwaitWriteback(std::uint64_t offset, std::uint64_t lengthBytes) = 0;
    /// The operating system's own handle of this file.
    [[nodiscard]] virtual std::intptr_t NativeHandle() const = 0;
};

struct OpenResult {
    FsStatus status = FsStatus::Ok;
    std::unique_ptr<OpenFile> file; ///< set exactly when status is Ok
};

class FileSystem {
  public:
    virtual ~FileSystem() = default;

    /// Opens an existing regular file; NotRegularFile for anything else, without waiting on a
    /// pipe. A link at the end of the path is not followed.
    [[nodiscard]] virtual OpenResult OpenForReading(const std::string& path) = 0;
    /// As OpenForReading, for writing over the content from the start; nothing is cut off.
    [[nodiscard]] virtual OpenResult OpenForOverwriting(const std::string& path) = 0;
    /// As OpenForOverwriting, for a file that is to go: one of this user's that is only
    /// write-protected is opened all the same, and stays so.
    [[nodiscard]] virtual OpenResult OpenForPurging(const std::string& path) = 0;
    /// Makes a new file that only its owner may read (0600); AlreadyExists if the name is taken.
    [[nodiscard]] virtual OpenResult CreateExclusively(const std::string& path) = 0;

    /// Opens a file for reading and writing, and makes it (0600) where there is none. It is
    /// locked while it is open: AlreadyExists while another process has it open this way.
    [[nodiscard]] virtual OpenResult OpenLocked(const std::string& path) = 0;

    /// What stands at `path` itself, links not followed; empty when nothing can be seen there.
    [[nodiscard]] virtual std::optional<FileInfo> Info(const std::string& path) = 0;
    /// The file that `path` leads to, links followed; empty when there is none.
    [[nodiscard]] virtual std::optional<FileIdentity> IdentityOf(const std::string& path) = 0;
    /// A number of the file system that holds `path`, the same whenever and wherever it is mounted
    /// again as far as it has one of its own; 0 where it has none.
    [[nodiscard]] virtual std::uint64_t VolumeOf(const std::string& path) = 0;
    /// Renames within a folder; AlreadyExists if `to` is taken, whatever by.
    [[nodiscard]] virtual FsStatus RenameWithoutReplacing(const std::string& from,
                                                          const std::string& to) = 0;
    /// Renames within a folder; a file at `to` is replaced in one step.
    [[nodiscard]] virtual FsStatus RenameReplacing(const std::string& from,
                                                   const std::string& to) = 0;
    [[nodiscard]] virtual FsStatus Remove(const std::string& path) = 0;
    /// Whether Remove may succeed, by all that its folder says.
    [[nodiscard]] virtual bool MayRemove(const std::string& path) = 0;
    /// Returns when the names in the folder that holds `path` are on the disk.
    [[nodiscard]] virtual FsStatus FlushFolderOf(const std::string& path) = 0;
    /// Whether files can be made in the folder that holds `path`.
    [[nodiscard]] virtual bool FolderAcceptsFiles(const std::string& path) = 0;
    /// Makes a folder that only its owner may enter (0700).
    [[nodiscard]] virtual FsStatus MakeFolder(const std::string& path) = 0;
    /// Removes an empty folder; AlreadyExists when something is in it.
    [[nodiscard]] virtual FsStatus RemoveFolder(const std::string& path) = 0;
    /// What is in a folder, in the order of the file system; nothing when it cannot be read or is
    /// no folder. A link at the end of the path is not followed. `goesOn`, which may be empty, is
    /// asked after each entry; once it says no, the reading ends with nothing.
    [[nodiscard]] virtual std::optional<std::vector<FolderEntry>>
    ListFolder(const std::string& path, const std::function<bool()>& goesOn) = 0;
    /// The path with every link resolved; empty when nothing is there.
    [[nodiscard]] virtual std::optional<std::string> CanonicalPath(const std::string& path) = 0;
    /// The free bytes that this user may fill on the drive that holds `path`; the largest number
    /// where the file system does not tell its size.
    [[nodiscard]] virtual std::optional<std::uint64_t> FreeBytes(const std::string& path) = 0;
    /// What is known of the disk that holds `path`, without rights to ask it itself.
    [[nodiscard]] virtual DiskKind KindOfDisk(const std::string& path) = 0;
    /// The longest name, in bytes, that the folder that holds `path` accepts.
    [[nodiscard]] virtual std::size_t LongestName(const std::string& path) = 0;
};

/// The file system of the machine. `MakeSystemFileSystem` is the only way to one.
[[nodiscard]] std::unique_ptr<FileSystem> MakeSystemFileSystem();

} // namespace zr5
