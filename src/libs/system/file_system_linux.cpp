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
