#include "libs/system/open_file_linux.h"

#include <algorithm>
#include <fcntl.h>
#include <string>
#include <sys/statvfs.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace zr5 {
namespace {

/// The largest piece handed to one read or write call; Linux moves no more at once.
constexpr std::size_t LargestTransfer = std::size_t{1} << 30U;

std::int64_t Nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

/// Whether a failed attribute call means that the disk is at fault, and not merely that this
/// file system does not know the attribute or this user may not set it.
bool IsRealFailure(int error) {
    const FsStatus status = StatusOf(error);
    return status == FsStatus::NoSpace || error == EIO;
}

/// The access list that a new file inherits from its folder, where `from` has none of its own.
void DropInheritedAccessList(int from, int to) {
    constexpr const char* AccessList = "system.posix_acl_access";
    if (fgetxattr(from, AccessList, nullptr, 0) < 0) fremovexattr(to, AccessList);
}

FsStatus CopyExtendedAttributes(int from, int to) {
    DropInheritedAccessList(from, to);
    const auto failure = [] { return IsRealFailure(errno) ? StatusOf(errno) : FsStatus::Ok; };
    const ssize_t listLength = flistxattr(from, nullptr, 0);
    if (listLength < 0) return failure();
    std::vector<char> names(static_cast<std::size_t>(listLength));
    const ssize_t filled = flistxattr(from, names.data(), names.size());
    if (filled < 0) return failure();
    std::vector<char> value;
    for (const char* name = names.data(); name < names.data() + filled;
         name += std::char_traits<char>::length(name) + 1) {
        const ssize_t size = fgetxattr(from, name, nullptr, 0);
        value.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        const ssize_t got = size < 0 ? size : fgetxattr(from, name, value.data(), value.size());
        FsStatus status = FsStatus::Ok;
        // With no room given, the length is asked for and nothing is read.
        value.resize(std::min(value.size(), static_cast<std::size_t>(std::max<ssize_t>(got, 0))));
        if (got < 0 || fsetxattr(to, name, value.data(), value.size(), 0) != 0) status = failure();
        if (status != FsStatus::Ok) return status;
    }
    return FsStatus::Ok;
}

/// The mode of `source` for a file that belongs to `own`: set-id bits were given by the owner
/// and must not make the file run as another one, and another group than the source's gets no
/// more than everybody has.
mode_t ModeFor(const struct stat& own, const struct stat& source) {
    mode_t mode = source.st_mode & 07777U;
    if (own.st_uid != source.st_uid) mode &= ~static_cast<mode_t>(S_ISUID);
    if (own.st_gid != source.st_gid) {
        const mode_t othersAsGroup = (mode & static_cast<mode_t>(S_IRWXO)) << 3U;
        mode &= ~static_cast<mode_t>(S_ISGID | S_IRWXG) | othersAsGroup;
    }
    return mode;
}

class LinuxFile final : public OpenFile {
  public:
    explicit LinuxFile(int descriptor) : descriptor_(descriptor) {}
    LinuxFile(const LinuxFile&) = delete;
    LinuxFile& operator=(const LinuxFile&) = delete;
    ~LinuxFile() override { close(descriptor_); }

    ReadResult Read(std::span<std::byte> into) override {
        if (into.size() >= LeastReadAheadFor) ReadAhead();
        ReadResult result;
        while (result.count < into.size()) {
            const std::size_t piece = std::min(into.size() - result.count, LargestTransfer);
            const ssize_t got =
                Retrying([&] { return read(descriptor_, into.data() + result.count, piece); });
            if (got < 0) {
                result.status = StatusOf(errno);
                break;
            }
            if (got == 0) break;
            result.count += static_cast<std::size_t>(got);
        }
        position_ += static_cast<off_t>(result.count);
        return result;
    }

    FsStatus Write(std::span<const std::byte> from) override {
        while (!from.empty()) {
            const std::size_t piece = std::min(from.size(), LargestTransfer);
            const ssize_t put = Retrying([&] { return write(descriptor_, from.data(), piece); });
            if (put < 0) return StatusOf(errno);
            from = from.subspan(static_cast<std::size_t>(put));
        }
        return FsStatus::Ok;
    }

    FsStatus Reserve(std::uint64_t lengthBytes) override {
        if (lengthBytes == 0) return FsStatus::Ok;
        const int result =
            Retrying([&] { return fallocate(descriptor_, 0, 0, static_cast<off_t>(lengthBytes)); });
        if (result == 0) return FsStatus::Ok;
        if (errno != EOPNOTSUPP && errno != ENOSYS && errno != EINVAL) return StatusOf(errno);
        struct statvfs room {};
        if (fstatvfs(descriptor_, &room) != 0) return FsStatus::Ok;
        return std::uint64_t{room.f_bavail} * room.f_frsize < lengthBytes ? FsStatus::NoSpace
                                                                          : FsStatus::Ok;
    }

    FsStatus Truncate(std::uint64_t lengthBytes) override {
        return StatusOfCall(
            Retrying([&] { return ftruncate(descriptor_, static_cast<off_t>(lengthBytes)); }));
    }

    FsStatus MoveTo(std::uint64_t offset) override {
        position_ = askedTo_ = static_cast<off_t>(offset);
        return StatusOfCall(lseek(descriptor_, static_cast<off_t>(offset), SEEK_SET));
    }

    FsStatus Flush() override {
        const FsStatus status = StatusOfCall(Retrying([&] { return fsync(descriptor_); }));
        return status == FsStatus::Ok ? awaited_ : status;
    }

    FsStatus FlushContent() override {
        const FsStatus status = StatusOfCall(Retrying([&] { return fdatasync(descriptor_); }));
        return status == FsStatus::Ok ? awaited_ : status;
    }

    void ForgetCached(std::uint64_t offset, std::uint64_t lengthBytes) override {
        posix_fadvise(descriptor_, static_cast<off_t>(offset), static_cast<off_t>(lengthBytes),
                      POSIX_FADV_DONTNEED);
    }

    std::optional<FileInfo> Info() const override {
        struct stat raw {};
        if (fstat(descriptor_, &raw) != 0) return std::nullopt;
        return InfoFrom(raw);
    }

    FsStatus CopyAttributesFrom(const OpenFile& source) override {
        const int from = static_cast<int>(source.NativeHandle());
        struct stat raw {};
        if (fstat(from, &raw) != 0) return StatusOf(errno);
        struct stat own {};
        if (fstat(descriptor_, &own) != 0) return StatusOf(errno);
        if (own.st_uid != raw.st_uid || own.st_gid != raw.st_gid) {
            // The owner first: changing it takes set-id bits away. The group alone may be
            // permitted where the owner is not.
            if (fchown(descriptor_, raw.st_uid, raw.st_gid) != 0 &&
                fchown(descriptor_, static_cast<uid_t>(-1), raw.st_gid) != 0 &&
                IsRealFailure(errno)) {
                return StatusOf(errno);
            }
            if (fstat(descriptor_, &own) != 0) return StatusOf(errno);
        }
        const FsStatus status = CopyExtendedAttributes(from, descriptor_);
        if (status != FsStatus::Ok) return status;
        const mode_t mode = ModeFor(own, raw);
        if (fchmod(descriptor_, mode) != 0 && IsRealFailure(errno)) return StatusOf(errno);
        return FsStatus::Ok;
    }

    void StartWriteback(std::uint64_t offset, std::uint64_t lengthBytes) override {
        Synchronize(offset, lengthBytes, SYNC_FILE_RANGE_WRITE);
    }

    void AwaitWriteback(std::uint64_t offset, std::uint64_t lengthBytes) override {
        Synchronize(offset, lengthBytes,
                    SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE |
                        SYNC_FILE_RANGE_WAIT_AFTER);
    }

    std::intptr_t NativeHandle() const override { return descriptor_; }

  private:
    static constexpr std::size_t LeastReadAheadFor = std::size_t{1} << 20U;
    static constexpr off_t ReadAheadStep = off_t{128} << 10U; // the system may cut longer ones
    static constexpr off_t MostReadAhead = off_t{16} << 20U;

    /// A failure that is told here is not told again when the file is flushed.
    void Synchronize(std::uint64_t offset, std::uint64_t lengthBytes, unsigned flags) {
        const int result = sync_file_range(descriptor_, static_cast<off_t>(offset),
                                           static_cast<off_t>(lengthBytes), flags);
        if (result != 0 && IsRealFailure(errno)) awaited_ = StatusOf(errno);
    }

    /// Lets the disk read while what it has read before is worked on. The system's own reading
    /// ahead is too short for that.
    void ReadAhead() {
        while (askedTo_ < position_ + MostReadAhead) {
            posix_fadvise(descriptor_, askedTo_, ReadAheadStep, POSIX_FADV_WILLNEED);
            askedTo_ += ReadAheadStep;
        }
    }

    int descriptor_;
    FsStatus awaited_ = FsStatus::Ok; ///< what waiting for the disk has told
    off_t position_ = 0;              ///< of the next reading
    off_t askedTo_ = 0;               ///< so far the disk was asked for
};

} // namespace

FsStatus StatusOf(int error) {
    switch (error) {
    case 0:
        return FsStatus::Ok;
    case ENOENT:
    case ENOTDIR:
        return FsStatus::NotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case ETXTBSY:
        return FsStatus::NotPermitted;
    case EEXIST:
    case ENOTEMPTY:
        return FsStatus::AlreadyExists;
    case ENOSPC:
    case EDQUOT:
        return FsStatus::NoSpace;
    case EISDIR:
    case ELOOP: // a link where no link is followed
    case ENXIO: // a pipe that nobody reads
        return FsStatus::NotRegularFile;
    default:
        return FsStatus::IoError;
    }
}

FileInfo InfoFrom(const struct stat& raw) {
    FileInfo info;
    info.kind = S_ISREG(raw.st_mode)   ? FileKind::Regular
                : S_ISDIR(raw.st_mode) ? FileKind::Folder
                : S_ISLNK(raw.st_mode) ? FileKind::Link
                                       : FileKind::Special;
    info.lengthBytes = static_cast<std::uint64_t>(raw.st_size);
    info.linkCount = raw.st_nlink;
    info.identity = {raw.st_dev, raw.st_ino};
    info.modifiedNs = Nanoseconds(raw.st_mtim);
    return info;
}

std::unique_ptr<OpenFile> MakeOpenFile(int descriptor) {
    return std::make_unique<LinuxFile>(descriptor);
}

} // namespace zr5
