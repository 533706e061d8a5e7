#include "libs/system/errors_linux.h"
#include "libs/system/file_system.h"
#include "libs/system/open_file_linux.h"
#include "libs/system/paths.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace zr5 {
namespace {

/// The folder that holds `path`, for a system call.
std::string FolderOf(const std::string& path) {
    std::string folder = SplitPath(path).folder;
    return folder.empty() ? "." : folder;
}

class LinuxFileSystem final : public FileSystem {
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
        // The file that was found, whatever has its name by now.
        const std::string same = "/proc/self/fd/" + std::to_string(descriptor);
        const int writable = Retrying([&] { return open(same.c_str(), O_WRONLY | O_CLOEXEC); });
        if (writable >= 0) opened = {FsStatus::Ok, MakeOpenFile(writable)};
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

    std::uint64_t VolumeOf(const std::string& path) override {
        struct statvfs volume {};
        return statvfs(path.c_str(), &volume) == 0 ? volume.f_fsid : 0;
    }

    FsStatus RenameWithoutReplacing(const std::string& from, const std::string& to) override {
        if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
            return FsStatus::Ok;
        }
        if (errno != EINVAL && errno != ENOSYS) return StatusOf(errno);
        // A file system without that call: a second name is never given to a taken one.
        if (link(from.c_str(), to.c_str()) == 0) {
            const FsStatus removed = Remove(from);
            if (removed != FsStatus::Ok) unlink(to.c_str());
            return removed;
        }
        if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS) return StatusOf(errno);
        if (Info(to)) return FsStatus::AlreadyExists;
        return RenameReplacing(from, to);
    }

    FsStatus RenameReplacing(const std::string& from, const std::string& to) override {
        return StatusOfCall(rename(from.c_str(), to.c_str()));
    }

    FsStatus Remove(const std::string& path) override { return StatusOfCall(unlink(path.c_str())); }

    bool MayRemove(const std::string& path) override {
        const std::string folder = FolderOf(path);
        if (access(folder.c_str(), W_OK | X_OK) != 0) return false;
        struct statx held {};
        if (statx(AT_FDCWD, folder.c_str(), 0, STATX_BASIC_STATS, &held) != 0) return false;
        if ((held.stx_attributes & STATX_ATTR_APPEND) != 0) return false;
        struct statx file {};
        if (statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS, &file) != 0) {
            return false;
        }
        constexpr std::uint64_t Fixed = STATX_ATTR_APPEND | STATX_ATTR_IMMUTABLE;
        if ((file.stx_attributes & Fixed) != 0) return false;
        // In a sticky folder files are removed by their owner and by the folder's.
        const uid_t user = geteuid();
        return (held.stx_mode & S_ISVTX) == 0 || user == 0 || user == held.stx_uid ||
               user == file.stx_uid;
    }

    FsStatus FlushFolderOf(const std::string& path) override {
        int flushed = open(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        // A folder that may be written but not read can be flushed with all its disk only.
        const bool withDisk = flushed < 0 && errno == EACCES;
        if (withDisk) {
            flushed = open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        }
        if (flushed < 0) return StatusOf(errno);
        const int result = Retrying([&] { return withDisk ? syncfs(flushed) : fsync(flushed); });
        const int error = result == 0 ? 0 : errno;
        close(flushed);
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

    std::optional<std::vector<FolderEntry>>
    ListFolder(const std::string& path, const std::function<bool()>& goesOn) override {
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
            if (goesOn && !goesOn()) return std::nullopt;
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
        return FreeBytesOf(room);
    }

    DiskKind KindOfDisk(const std::string& path) override {
        struct statfs system {};
        struct stat raw {};
        if (statfs(path.c_str(), &system) != 0 || stat(path.c_str(), &raw) != 0) {
            return DiskKind::Plain;
        }
        const std::string number =
            std::to_string(major(raw.st_dev)) + ":" + std::to_string(minor(raw.st_dev));
        return KindFrom({.fileSystemType = static_cast<std::uint32_t>(system.f_type),
                         .device = ReadBlockDevice("/sys/dev/block/" + number)});
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
        auto file = MakeOpenFile(descriptor);
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
    return std::make_unique<LinuxFileSystem>();
}

} // namespace zr5
