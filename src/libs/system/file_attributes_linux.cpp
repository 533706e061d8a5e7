#include "libs/system/file_attributes_linux.h"

#include "libs/system/errors_linux.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace zr5 {
namespace {

constexpr const char* AccessList = "system.posix_acl_access";
constexpr int MostTries = 10;

/// What two calls, of which the first asks for the length, read; nothing after a failure, which
/// errno tells. Tries again where it has grown in between.
template <typename Call>
std::optional<std::vector<char>> ReadAll(const Call& call) {
    for (int i = 0; i < MostTries; ++i) {
        const ssize_t length = call(nullptr, 0);
        if (length < 0) return std::nullopt;
        std::vector<char> bytes(static_cast<std::size_t>(length));
        if (length == 0) return bytes; // with no room given, nothing would be read
        const ssize_t got = call(bytes.data(), bytes.size());
        if (got < 0 && errno == ERANGE) continue;
        if (got < 0) return std::nullopt;
        bytes.resize(static_cast<std::size_t>(got));
        return bytes;
    }
    errno = EIO; // it never stands still
    return std::nullopt;
}

std::optional<std::vector<char>> Attribute(int file, const char* name) {
    return ReadAll([&](char* into, std::size_t room) { return fgetxattr(file, name, into, room); });
}

FsStatus Failure() {
    return IsRealFailure(errno) ? StatusOf(errno) : FsStatus::Ok;
}

/// The access list that a new file inherits from its folder, where `from` has none of its own.
void DropInheritedAccessList(int from, int to) {
    if (fgetxattr(from, AccessList, nullptr, 0) < 0) fremovexattr(to, AccessList);
}

FsStatus CopyExtendedAttributes(int from, int to) {
    DropInheritedAccessList(from, to);
    const auto names =
        ReadAll([&](char* into, std::size_t room) { return flistxattr(from, into, room); });
    if (!names) return Failure();
    for (auto name = names->begin(); name != names->end(); ++name) {
        const auto value = Attribute(from, &*name);
        if (!value || fsetxattr(to, &*name, value->data(), value->size(), 0) != 0) {
            const FsStatus status = Failure();
            if (status != FsStatus::Ok) return status;
        }
        name = std::find(name, names->end(), '\0');
    }
    return FsStatus::Ok;
}

/// What the group may do by an access list in the form in which the system keeps it (acl(5)): a
/// version in four bytes, then entries of tag, rights, and user or group. Nothing when there is no
/// list, whose mode then says it.
std::optional<mode_t> GroupRightsByList(int file) {
    constexpr std::uint16_t GroupTag = 4;
    constexpr std::uint16_t MaskTag = 16;
    constexpr std::size_t VersionBytes = 4;
    constexpr std::size_t EntryBytes = 8;
    const auto list = Attribute(file, AccessList);
    if (!list) return std::nullopt;
    unsigned group = 0;
    unsigned mask = S_IRWXO;
    for (std::size_t at = VersionBytes; at + EntryBytes <= list->size(); at += EntryBytes) {
        std::uint16_t tag = 0;
        std::uint16_t rights = 0;
        std::memcpy(&tag, list->data() + at, sizeof tag);
        std::memcpy(&rights, list->data() + at + sizeof tag, sizeof rights);
        if (tag == GroupTag) group = rights;
        if (tag == MaskTag) mask = rights;
    }
    return static_cast<mode_t>((group & mask & S_IRWXO) << 3U);
}

/// The mode of `from`. With an access list its middle is the list's mask, which says what others
/// than the group may do as well: without the list at `to` it must not become the group's.
mode_t ModeOf(int from, int to, const struct stat& raw) {
    const mode_t mode = raw.st_mode & 07777U;
    if (fgetxattr(to, AccessList, nullptr, 0) >= 0) return mode;
    const auto group = GroupRightsByList(from);
    return group ? (mode & ~static_cast<mode_t>(S_IRWXG)) | *group : mode;
}

/// `mode`, which `source` has, for a file that belongs to `own`: set-id bits were given by the
/// owner and must not make the file run as another one, and another group than the source's gets
/// no more than everybody has.
mode_t ModeFor(const struct stat& own, const struct stat& source, mode_t mode) {
    if (own.st_uid != source.st_uid) mode &= ~static_cast<mode_t>(S_ISUID);
    if (own.st_gid != source.st_gid) {
        const mode_t othersAsGroup = (mode & static_cast<mode_t>(S_IRWXO)) << 3U;
        mode &= ~static_cast<mode_t>(S_ISGID | S_IRWXG) | othersAsGroup;
    }
    return mode;
}

FsStatus SetMode(int file, mode_t mode) {
    return fchmod(file, mode) == 0 ? FsStatus::Ok : Failure();
}

/// The owner is given away first: that takes set-id bits with it. The group alone may be permitted
/// where the owner is not.
FsStatus TakeOwner(int file, struct stat& own, const struct stat& source) {
    if (own.st_uid == source.st_uid && own.st_gid == source.st_gid) return FsStatus::Ok;
    if (fchown(file, source.st_uid, source.st_gid) != 0 &&
        fchown(file, static_cast<uid_t>(-1), source.st_gid) != 0 && IsRealFailure(errno)) {
        return StatusOf(errno);
    }
    return StatusOfCall(fstat(file, &own));
}

} // namespace

FsStatus CopyAttributes(int from, int to) {
    struct stat source {};
    struct stat own {};
    if (fstat(from, &source) != 0 || fstat(to, &own) != 0) return StatusOf(errno);
    FsStatus status = TakeOwner(to, own, source);
    if (status == FsStatus::Ok) status = CopyExtendedAttributes(from, to);
    if (status != FsStatus::Ok) return status;
    return SetMode(to, ModeFor(own, source, ModeOf(from, to, source)));
}

FsStatus CopyModeLessMask(int from, int to) {
    struct stat source {};
    struct stat own {};
    if (fstat(from, &source) != 0 || fstat(to, &own) != 0) return StatusOf(errno);
    const mode_t mask = umask(S_IRWXG | S_IRWXO); // can be asked by setting only
    umask(mask);
    fremovexattr(to, AccessList); // which the folder may have given it
    const mode_t wanted = ModeFor(own, source, ModeOf(from, to, source));
    return SetMode(to, wanted & ~mask & static_cast<mode_t>(S_IRWXU | S_IRWXG | S_IRWXO));
}

} // namespace zr5
