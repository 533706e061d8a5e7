#include "libs/system/open_file_linux.h"

#include "libs/system/disk_kind.h"
#include "libs/system/errors_linux.h"
#include "libs/system/file_attributes_linux.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <limits>
#include <sys/vfs.h>
#include <unistd.h>
#include <utility>

namespace zr5 {
namespace {

/// The largest piece handed to one read or write call; Linux moves no more at once.
constexpr std::size_t LargestTransfer = std::size_t{1} << 30U;

std::int64_t Nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

/// The room that such a file system needs to overwrite a file is not that which it takes.
bool WritesElsewhere(int descriptor) {
    struct statfs system {};
    if (fstatfs(descriptor, &system) != 0) return false;
    const DiskFacts facts{.fileSystemType = static_cast<std::uint32_t>(system.f_type),
                          .device = {}};
    return IsCopyOnWrite(KindFrom(facts));
}

/// The room that a file takes.
std::uint64_t BytesOnDisk(const struct stat& raw) {
    constexpr std::uint64_t CountedBytes = 512; // of a block in st_blocks
    return static_cast<std::uint64_t>(raw.st_blocks) * CountedBytes;
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
            if (put == 0) return FsStatus::IoError; // or it would be asked for ever
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
        return FreeBytes() < lengthBytes ? FsStatus::NoSpace : FsStatus::Ok;
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
        return Flushed(StatusOfCall(Retrying([&] { return fsync(descriptor_); })));
    }

    FsStatus FlushContent() override {
        return Flushed(StatusOfCall(Retrying([&] { return fdatasync(descriptor_); })));
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
        return CopyAttributes(static_cast<int>(source.NativeHandle()), descriptor_);
    }

    FsStatus TakeModeFrom(const OpenFile& source) override {
        return CopyModeLessMask(static_cast<int>(source.NativeHandle()), descriptor_);
    }

    ByteRange NextData(std::uint64_t offset) const override {
        struct stat raw {};
        if (fstat(descriptor_, &raw) != 0) {
            return {offset, std::numeric_limits<std::uint64_t>::max() - offset};
        }
        if (static_cast<off_t>(offset) >= raw.st_size) return {};
        const ByteRange rest{offset, static_cast<std::uint64_t>(raw.st_size) - offset};
        // What was reserved, and is not known to be written, would be told as a hole; but it can
        // hold what was on its way there when the power failed.
        if (BytesOnDisk(raw) >= static_cast<std::uint64_t>(raw.st_size)) return rest;
        const off_t position = lseek(descriptor_, 0, SEEK_CUR);
        const off_t data = lseek(descriptor_, static_cast<off_t>(offset), SEEK_DATA);
        if (data < 0) return errno == ENXIO ? ByteRange{} : rest;
        const off_t hole = lseek(descriptor_, data, SEEK_HOLE);
        lseek(descriptor_, position, SEEK_SET);
        if (hole < 0) return rest;
        return {static_cast<std::uint64_t>(data), static_cast<std::uint64_t>(hole - data)};
    }

    bool HasRoomToOverwrite() const override {
        // The system's own books grow, too, while it writes elsewhere.
        constexpr std::uint64_t Books = std::uint64_t{1} << 20U;
        constexpr std::uint64_t BooksPart = 64;
        struct stat raw {};
        if (!WritesElsewhere(descriptor_) || fstat(descriptor_, &raw) != 0) return true;
        // What is compressed on the disk takes more when it is random.
        std::uint64_t dataBytes = 0;
        for (ByteRange data = NextData(0); data.lengthBytes != 0;
             data = NextData(data.offset + data.lengthBytes)) {
            dataBytes += data.lengthBytes;
        }
        const std::uint64_t taken = std::max(BytesOnDisk(raw), dataBytes);
        return FreeBytes() >= taken + taken / BooksPart + Books;
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

    /// Of a flush that ended with `status`: a failure since the last one counts as its own, once.
    FsStatus Flushed(FsStatus status) {
        const FsStatus awaited = std::exchange(awaited_, FsStatus::Ok);
        return status == FsStatus::Ok ? awaited : status;
    }

    [[nodiscard]] std::uint64_t FreeBytes() const {
        struct statvfs room {};
        return fstatvfs(descriptor_, &room) == 0 ? FreeBytesOf(room)
                                                 : std::numeric_limits<std::uint64_t>::max();
    }

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
    info.isOwnedByUser = raw.st_uid == geteuid();
    // The group's bits bound what an access list gives anybody.
    info.isWritableByOthers = (raw.st_mode & (S_IWGRP | S_IWOTH)) != 0;
    info.changedNs = Nanoseconds(raw.st_ctim);
    return info;
}

std::uint64_t FreeBytesOf(const struct statvfs& room) {
    if (room.f_blocks == 0) return std::numeric_limits<std::uint64_t>::max();
    return std::uint64_t{room.f_bavail} * room.f_frsize;
}

std::unique_ptr<OpenFile> MakeOpenFile(int descriptor) {
    return std::make_unique<LinuxFile>(descriptor);
}

} // namespace zr5
