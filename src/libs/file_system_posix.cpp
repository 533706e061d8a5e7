#include "libs/file_system.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace zr5 {
namespace {

/// The largest piece handed to one read or write call; Linux moves no more at once.
constexpr std::size_t LargestTransfer = std::size_t{1} << 30U;

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

/// Repeats a call that a signal interrupted.
template <typename Call>
auto Retrying(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

FsStatus StatusOfCall(long result) {
    return result < 0 ? StatusOf(errno) : FsStatus::Ok;
}

std::int64_t Nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
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

std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
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

class PosixFile final : public OpenFile {
  public:
    explicit PosixFile(int descriptor) : descriptor_(descriptor) {}
    PosixFile(const PosixFile&) = delete;
    PosixFile& operator=(const PosixFile&) = delete;
    ~PosixFile() override { close(descriptor_); }

    ReadResult Read(std::span<std::byte> into) override {
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
        return StatusOfCall(lseek(descriptor_, static_cast<off_t>(offset), SEEK_SET));
    }

    FsStatus Flush() override {
        return StatusOfCall(Retrying([&] { return fsync(descriptor_); }));
    }

    FsStatus FlushContent() override {
        return StatusOfCall(Retrying([&] { return fdatasync(descriptor_); }));
    }

    void ForgetCached() override { posix_fadvise(descriptor_, 0, 0, POSIX_FADV_DONTNEED); }

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
        sync_file_range(descriptor_, static_cast<off_t>(offset), static_cast<off_t>(lengthBytes),
                        SYNC_FILE_RANGE_WRITE);
    }

    void AwaitWriteback(std::uint64_t offset, std::uint64_t lengthBytes) override {
        sync_file_range(descriptor_, static_cast<off_t>(offset), static_cast<off_t>(lengthBytes),
                        SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE |
                            SYNC_FILE_RANGE_WAIT_AFTER);
    }

    std::intptr_t NativeHandle() const override { return descriptor_; }

  private:
    int descriptor_;
};

class PosixFileSystem final : public FileSystem {
  public:
    OpenResult OpenForReading(const std::string& path) override {
        return Open(path, O_RDONLY | O_NONBLOCK);
    }

    OpenResult OpenForOverwriting(const std::string& path) override {
        return Open(path, O_WRONLY | O_NONBLOCK);
    }

    OpenResult OpenForPurging(const std::string& path) override {
        OpenResult opened = Open(path, O_WRONLY | O_NONBLOCK);
        if (opened.status != FsStatus::NotPermitted) return opened;
        const OpenResult readable = OpenForReading(path);
        if (readable.status != FsStatus::Ok) return opened;
        const int descriptor = static_cast<int>(readable.file->NativeHandle());
        struct stat raw {};
        if (fstat(descriptor, &raw) != 0 || (raw.st_mode & S_IWUSR) != 0) return opened;
        if (fchmod(descriptor, (raw.st_mode & 07777U) | S_IWUSR) != 0)
            return opened; // not its owner
        opened = Open(path, O_WRONLY | O_NONBLOCK);
        static_cast<void>(fchmod(descriptor, raw.st_mode & 07777U));
        return opened;
    }

    OpenResult CreateExclusively(const std::string& path) override {
        return Open(path, O_RDWR | O_CREAT | O_EXCL);
    }

    OpenResult OpenLocked(const std::string& path) override {
        OpenResult opened = Open(path, O_RDWR | O_CREAT | O_NONBLOCK);
        if (opened.status != FsStatus::Ok) return opened;
        const int descriptor = static_cast<int>(opened.file->NativeHandle());
        if (Retrying([&] { return flock(descriptor, LOCK_EX | LOCK_NB); }) != 0) {
            return {errno == EWOULDBLOCK ? FsStatus::AlreadyExists : StatusOf(errno), nullptr};
        }
        // Whoever had the lock before may have removed the file meanwhile.
        const auto named = Info(path);
        const auto held = opened.file->Info();
        if (!named || !held || named->identity != held->identity) {
            return {FsStatus::AlreadyExists, nullptr};
        }
        return opened;
    }

    std::optional<FileInfo> Info(const std::string& path) override {
        struct stat raw {};
        if (lstat(path.c_str(), &raw) != 0) return std::nullopt;
        return InfoFrom(raw);
    }

    std::optional<FileIdentity> IdentityOf(const std::string& path) override {
        struct stat raw {};
        if (stat(path.c_str(), &raw) != 0) return std::nullopt;
        return FileIdentity{raw.st_dev, raw.st_ino};
    }

    FsStatus RenameWithoutReplacing(const std::string& from, const std::string& to) override {
        if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
            return FsStatus::Ok;
        }
        if (errno != EINVAL && errno != ENOSYS) return StatusOf(errno);
        // A file system without that call: a second name is never given to a taken one.
        if (link(from.c_str(), to.c_str()) == 0) return Remove(from);
        if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS) return StatusOf(errno);
        if (Info(to)) return FsStatus::AlreadyExists;
        return RenameReplacing(from, to);
    }

    FsStatus RenameReplacing(const std::string& from, const std::string& to) override {
        return StatusOfCall(rename(from.c_str(), to.c_str()));
    }

    FsStatus Remove(const std::string& path) override { return StatusOfCall(unlink(path.c_str())); }

    FsStatus FlushFolderOf(const std::string& path) override {
        const int folder = open(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        // A folder that may be written but not read cannot be asked to flush.
        if (folder < 0) return errno == EACCES ? FsStatus::Ok : StatusOf(errno);
        const int result = Retrying([&] { return fsync(folder); });
        const int error = result == 0 ? 0 : errno;
        close(folder);
        return error == EINVAL ? FsStatus::Ok : StatusOf(error); // EINVAL: has no such thing
    }

    bool FolderAcceptsFiles(const std::string& path) override {
        return access(FolderOf(path).c_str(), W_OK | X_OK) == 0;
    }

    FsStatus MakeFolder(const std::string& path) override {
        return StatusOfCall(mkdir(path.c_str(), 0700));
    }

    FsStatus RemoveFolder(const std::string& path) override {
        return StatusOfCall(rmdir(path.c_str()));
    }

    std::optional<std::vector<FolderEntry>> ListFolder(const std::string& path) override {
        const int descriptor =
            open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
        if (descriptor < 0) return std::nullopt;
        struct CloseFolder {
            void operator()(DIR* folder) const { closedir(folder); }
        };
        const std::unique_ptr<DIR, CloseFolder> folder(fdopendir(descriptor));
        if (!folder) {
            close(descriptor);
            return std::nullopt;
        }
        std::vector<FolderEntry> entries;
        while (true) {
            errno = 0; // only readdir's own failure counts
            const dirent* entry = readdir(folder.get());
            if (entry == nullptr) break;
            const std::string_view name = entry->d_name;
            if (name == "." || name == "..") continue;
            entries.push_back({std::string(name), KindOf(descriptor, *entry)});
        }
        if (errno != 0) return std::nullopt;
        return entries;
    }

    std::optional<std::string> CanonicalPath(const std::string& path) override {
        const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr),
                                                                   &std::free);
        if (!resolved) return std::nullopt;
        return std::string(resolved.get());
    }

    std::optional<std::uint64_t> FreeBytes(const std::string& path) override {
        struct statvfs room {};
        if (statvfs(path.c_str(), &room) != 0) return std::nullopt;
        return std::uint64_t{room.f_bavail} * room.f_frsize;
    }

    std::size_t LongestName(const std::string& path) override {
        const long longest = pathconf(FolderOf(path).c_str(), _PC_NAME_MAX);
        return longest > 0 ? static_cast<std::size_t>(longest) : NAME_MAX;
    }

  private:
    static FileKind KindOf(int folder, const dirent& entry) {
        switch (entry.d_type) {
        case DT_REG:
            return FileKind::Regular;
        case DT_DIR:
            return FileKind::Folder;
        case DT_LNK:
            return FileKind::Link;
        case DT_UNKNOWN: {
            struct stat raw {};
            const bool known = fstatat(folder, entry.d_name, &raw, AT_SYMLINK_NOFOLLOW) == 0;
            return known ? InfoFrom(raw).kind : FileKind::Special;
        }
        default:
            return FileKind::Special;
        }
    }

    static OpenResult Open(const std::string& path, int flags) {
        const int descriptor = Retrying(
            [&] { return open(path.c_str(), flags | O_CLOEXEC | O_NOFOLLOW | O_NOCTTY, 0600); });
        if (descriptor < 0) return {StatusOf(errno), nullptr};
        auto file = std::make_unique<PosixFile>(descriptor);
        struct stat raw {};
        if (fstat(descriptor, &raw) != 0) {
            const FsStatus status = StatusOf(errno);
            if ((flags & O_EXCL) != 0) unlink(path.c_str()); // it was made just now
            return {status, nullptr};
        }
        if (!S_ISREG(raw.st_mode)) return {FsStatus::NotRegularFile, nullptr};
        posix_fadvise(descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
        return {FsStatus::Ok, std::move(file)};
    }
};

} // namespace

std::unique_ptr<FileSystem> MakeSystemFileSystem() {
    return std::make_unique<PosixFileSystem>();
}

} // namespace zr5
