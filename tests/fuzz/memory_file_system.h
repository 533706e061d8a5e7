#pragma once

// Files in memory, as far as the engine asks for them, so that a fuzzer does not wait for a disk.

#include "libs/system/file_system.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

namespace zr5::fuzz {

/// An open file of a MemoryFileSystem, which keeps its content.
class MemoryFile final : public OpenFile {
  public:
    explicit MemoryFile(std::string& content) : content_(content) {}

    ReadResult Read(std::span<std::byte> into) override {
        const std::size_t count = std::min(into.size(), content_.size() - at_);
        if (count != 0) std::memcpy(into.data(), content_.data() + at_, count);
        at_ += count;
        return {FsStatus::Ok, count};
    }
    FsStatus Write(std::span<const std::byte> from) override {
        content_.resize(std::max(content_.size(), at_ + from.size()));
        if (!from.empty()) std::memcpy(content_.data() + at_, from.data(), from.size());
        at_ += from.size();
        return FsStatus::Ok;
    }
    FsStatus Reserve(std::uint64_t lengthBytes) override { return Truncate(lengthBytes); }
    FsStatus Truncate(std::uint64_t lengthBytes) override {
        content_.resize(static_cast<std::size_t>(lengthBytes));
        return FsStatus::Ok;
    }
    FsStatus MoveTo(std::uint64_t offset) override {
        at_ = static_cast<std::size_t>(offset);
        return at_ <= content_.size() ? FsStatus::Ok : FsStatus::IoError;
    }
    FsStatus Flush() override { return FsStatus::Ok; }
    FsStatus FlushContent() override { return FsStatus::Ok; }
    void ForgetCached(std::uint64_t /*offset*/, std::uint64_t /*lengthBytes*/) override {}
    [[nodiscard]] std::optional<FileInfo> Info() const override {
        FileInfo info;
        info.lengthBytes = content_.size();
        info.identity.inode = reinterpret_cast<std::uintptr_t>(&content_);
        return info;
    }
    FsStatus CopyAttributesFrom(const OpenFile&) override { return FsStatus::Ok; }
    void StartWriteback(std::uint64_t, std::uint64_t) override {}
    void AwaitWriteback(std::uint64_t, std::uint64_t) override {}
    [[nodiscard]] std::intptr_t NativeHandle() const override { std::abort(); }

  private:
    std::string& content_;
    std::size_t at_ = 0;
};

class MemoryFileSystem final : public FileSystem {
  public:
    std::map<std::string, std::string> files; ///< content by path

    OpenResult OpenForReading(const std::string& path) override {
        const auto found = files.find(path);
        if (found == files.end()) return {FsStatus::NotFound, nullptr};
        return {FsStatus::Ok, std::make_unique<MemoryFile>(found->second)};
    }
    OpenResult OpenForOverwriting(const std::string& path) override { return OpenForReading(path); }
    OpenResult OpenForPurging(const std::string& path) override { return OpenForReading(path); }
    OpenResult CreateExclusively(const std::string& path) override {
        if (!files.emplace(path, "").second) return {FsStatus::AlreadyExists, nullptr};
        return OpenForReading(path);
    }
    OpenResult OpenLocked(const std::string& path) override {
        files.try_emplace(path);
        return OpenForReading(path);
    }
    std::optional<FileInfo> Info(const std::string& path) override {
        const OpenResult opened = OpenForReading(path);
        return opened.file ? opened.file->Info() : std::nullopt;
    }
    std::optional<FileIdentity> IdentityOf(const std::string& path) override {
        const auto info = Info(path);
        return info ? std::optional(info->identity) : std::nullopt;
    }
    FsStatus RenameWithoutReplacing(const std::string& from, const std::string& to) override {
        return files.contains(to) ? FsStatus::AlreadyExists : RenameReplacing(from, to);
    }
    FsStatus RenameReplacing(const std::string& from, const std::string& to) override {
        const auto found = files.find(from);
        if (found == files.end()) return FsStatus::NotFound;
        std::string content = std::move(found->second);
        files.erase(found);
        files[to] = std::move(content);
        return FsStatus::Ok;
    }
    FsStatus Remove(const std::string& path) override {
        return files.erase(path) == 1 ? FsStatus::Ok : FsStatus::NotFound;
    }
    FsStatus FlushFolderOf(const std::string&) override { return FsStatus::Ok; }
    bool FolderAcceptsFiles(const std::string&) override { return true; }
    FsStatus MakeFolder(const std::string&) override { return FsStatus::NotPermitted; }
    FsStatus RemoveFolder(const std::string&) override { return FsStatus::NotFound; }
    std::optional<std::vector<FolderEntry>> ListFolder(const std::string&) override { return {}; }
    std::optional<std::string> CanonicalPath(const std::string& path) override { return path; }
    std::optional<std::uint64_t> FreeBytes(const std::string&) override { return {}; }
    std::size_t LongestName(const std::string&) override { return 255; }
};

} // namespace zr5::fuzz
