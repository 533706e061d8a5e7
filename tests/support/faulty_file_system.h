#pragma once

// A file system that fails where a test says, or stops there: the call of a kind, or the call
// of any kind, with a number counted from 1.

#include "libs/system/file_system.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace zr5::test {

enum class FsCall {
    Open,
    Create,
    FileInfo,
    Read,
    Write,
    Reserve,
    Truncate,
    Flush,
    CopyAttributes,
    Rename,
    Remove,
    FlushFolder,
    ListFolder,
    MakeFolder,
    RemoveFolder,
    Look, ///< at a path, without opening it
    MoveTo,
};

class FaultyFileSystem : public FileSystem {
  public:
    /// Hands on to `inner` what it does not fail.
    explicit FaultyFileSystem(FileSystem& inner) : inner_(inner) {}

    /// The `number`-th call of `kind` from now on answers `status` and has no effect, but that a
    /// failing read or write has moved its first half. A failing FileInfo or Look sees nothing.
    void Fail(FsCall kind, unsigned number, FsStatus status = FsStatus::IoError) {
        events_.push_back({.kind = kind, .number = number, .status = status});
    }
    /// The same for the `number`-th call whatever its kind.
    void FailAny(unsigned number, FsStatus status = FsStatus::IoError) {
        events_.push_back({.kind = std::nullopt, .number = number, .status = status});
    }
    /// The `number`-th read finds the end of the file after `bytes` bytes.
    void EndReadEarly(unsigned number, std::size_t bytes) {
        events_.push_back({.kind = FsCall::Read, .number = number, .readAtMost = bytes});
    }
    /// Runs `hook` just before the `number`-th call of `kind`.
    void Before(FsCall kind, unsigned number, std::function<void()> hook) {
        events_.push_back({.kind = kind, .number = number, .hook = std::move(hook)});
    }
    /// The same for the `number`-th call whatever its kind.
    void BeforeAny(unsigned number, std::function<void()> hook) {
        events_.push_back({.kind = std::nullopt, .number = number, .hook = std::move(hook)});
    }
    void Reset();

    [[nodiscard]] const std::vector<FsCall>& Calls() const { return calls_; }
    [[nodiscard]] std::uint64_t WrittenBytes() const { return writtenBytes_; }
    [[nodiscard]] bool AllMet() const;

    OpenResult OpenForReading(const std::string& path) override {
        return Opened(FsCall::Open, [&] { return inner_.OpenForReading(path); });
    }
    OpenResult OpenForOverwriting(const std::string& path) override {
        return Opened(FsCall::Open, [&] { return inner_.OpenForOverwriting(path); });
    }
    OpenResult OpenForPurging(const std::string& path) override {
        return Opened(FsCall::Open, [&] { return inner_.OpenForPurging(path); });
    }
    OpenResult OpenLocked(const std::string& path) override {
        return Opened(FsCall::Open, [&] { return inner_.OpenLocked(path); });
    }
    OpenResult CreateExclusively(const std::string& path) override {
        return Opened(FsCall::Create, [&] { return inner_.CreateExclusively(path); });
    }
    std::optional<FileInfo> Info(const std::string& path) override {
        return SeesNothing() ? std::nullopt : inner_.Info(path);
    }
    std::optional<FileIdentity> IdentityOf(const std::string& path) override {
        return SeesNothing() ? std::nullopt : inner_.IdentityOf(path);
    }
    std::uint64_t VolumeOf(const std::string& path) override { return inner_.VolumeOf(path); }
    FsStatus RenameWithoutReplacing(const std::string& from, const std::string& to) override {
        return StatusFor(FsCall::Rename, [&] { return inner_.RenameWithoutReplacing(from, to); });
    }
    FsStatus RenameReplacing(const std::string& from, const std::string& to) override {
        return StatusFor(FsCall::Rename, [&] { return inner_.RenameReplacing(from, to); });
    }
    FsStatus Remove(const std::string& path) override {
        return StatusFor(FsCall::Remove, [&] { return inner_.Remove(path); });
    }
    bool MayRemove(const std::string& path) override { return inner_.MayRemove(path); }
    FsStatus FlushFolderOf(const std::string& path) override {
        return StatusFor(FsCall::FlushFolder, [&] { return inner_.FlushFolderOf(path); });
    }
    bool FolderAcceptsFiles(const std::string& path) override {
        return !SeesNothing() && inner_.FolderAcceptsFiles(path);
    }
    FsStatus MakeFolder(const std::string& path) override {
        return StatusFor(FsCall::MakeFolder, [&] { return inner_.MakeFolder(path); });
    }
    FsStatus RemoveFolder(const std::string& path) override {
        return StatusFor(FsCall::RemoveFolder, [&] { return inner_.RemoveFolder(path); });
    }
    std::optional<std::vector<FolderEntry>>
    ListFolder(const std::string& path, const std::function<bool()>& goesOn) override {
        return Fails(FsCall::ListFolder) ? std::nullopt : inner_.ListFolder(path, goesOn);
    }
    std::optional<std::string> CanonicalPath(const std::string& path) override {
        return SeesNothing() ? std::nullopt : inner_.CanonicalPath(path);
    }
    std::optional<std::uint64_t> FreeBytes(const std::string& path) override {
        if (freeBytes) return *freeBytes;
        return inner_.FreeBytes(path);
    }
    /// What FreeBytes answers, a failure included; not set: the truth.
    std::optional<std::optional<std::uint64_t>> freeBytes;
    DiskKind KindOfDisk(const std::string& path) override {
        const auto found = diskKinds.find(path);
        return found == diskKinds.end() ? DiskKind::Plain : found->second;
    }
    std::map<std::string, DiskKind> diskKinds; ///< by path, where it is not a plain one
    std::size_t LongestName(const std::string& path) override { return inner_.LongestName(path); }

  private:
    friend class FaultyFile;
    struct Event {
        std::optional<FsCall> kind; ///< none: any
        unsigned number;            ///< how many such calls from now, 1 being the next; 0: met
        FsStatus status = FsStatus::Ok;
        std::optional<std::size_t> readAtMost = std::nullopt;
        std::function<void()> hook = nullptr;
    };
    /// Counts a call; the event that meets it, if any.
    const Event* Meet(FsCall kind);
    bool Fails(FsCall kind) {
        return StatusFor(kind, [] { return FsStatus::Ok; }) != FsStatus::Ok;
    }
    bool SeesNothing() { return Fails(FsCall::Look); }
    FsStatus StatusFor(FsCall kind, const std::function<FsStatus()>& call);
    OpenResult Opened(FsCall kind, const std::function<OpenResult()>& call);

    FileSystem& inner_;
    std::vector<Event> events_;
    std::vector<FsCall> calls_;
    std::uint64_t writtenBytes_ = 0;
};

} // namespace zr5::test
