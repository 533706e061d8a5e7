#include "support/faulty_file_system.h"

#include <algorithm>

namespace zr5::test {

class FaultyFile : public OpenFile {
  public:
    FaultyFile(FaultyFileSystem& disk, std::unique_ptr<OpenFile> inner)
        : disk_(disk), inner_(std::move(inner)) {}

    ReadResult Read(std::span<std::byte> into) override {
        const auto* event = disk_.Meet(FsCall::Read);
        if (event != nullptr && event->status != FsStatus::Ok) return {event->status, 0};
        if (event != nullptr && event->readAtMost) {
            into = into.first(std::min(into.size(), *event->readAtMost));
        }
        return inner_->Read(into);
    }

    FsStatus Write(std::span<const std::byte> from) override {
        const auto* event = disk_.Meet(FsCall::Write);
        const bool fails = event != nullptr && event->status != FsStatus::Ok;
        const auto part = fails ? from.first(from.size() / 2) : from;
        const FsStatus status = inner_->Write(part);
        if (status == FsStatus::Ok) disk_.writtenBytes_ += part.size();
        return fails ? event->status : status;
    }

    FsStatus Reserve(std::uint64_t lengthBytes) override {
        return disk_.StatusFor(FsCall::Reserve, [&] { return inner_->Reserve(lengthBytes); });
    }
    FsStatus Truncate(std::uint64_t lengthBytes) override {
        return disk_.StatusFor(FsCall::Truncate, [&] { return inner_->Truncate(lengthBytes); });
    }
    FsStatus Flush() override {
        return disk_.StatusFor(FsCall::Flush, [&] { return inner_->Flush(); });
    }
    FsStatus FlushContent() override {
        return disk_.StatusFor(FsCall::Flush, [&] { return inner_->FlushContent(); });
    }
    FsStatus MoveTo(std::uint64_t offset) override { return inner_->MoveTo(offset); }
    void ForgetCached() override { inner_->ForgetCached(); }
    FsStatus CopyAttributesFrom(const OpenFile& source) override {
        return disk_.StatusFor(FsCall::CopyAttributes,
                               [&] { return inner_->CopyAttributesFrom(source); });
    }
    std::optional<FileInfo> Info() const override {
        const auto* event = disk_.Meet(FsCall::FileInfo);
        if (event != nullptr && event->status != FsStatus::Ok) return std::nullopt;
        return inner_->Info();
    }
    void StartWriteback(std::uint64_t offset, std::uint64_t lengthBytes) override {
        inner_->StartWriteback(offset, lengthBytes);
    }
    void AwaitWriteback(std::uint64_t offset, std::uint64_t lengthBytes) override {
        inner_->AwaitWriteback(offset, lengthBytes);
    }
    std::intptr_t NativeHandle() const override { return inner_->NativeHandle(); }

  private:
    FaultyFileSystem& disk_;
    std::unique_ptr<OpenFile> inner_;
};

void FaultyFileSystem::Fail(FsCall kind, unsigned number, FsStatus status) {
    events_.push_back({.anyKind = false, .kind = kind, .number = number, .status = status});
}

void FaultyFileSystem::FailAny(unsigned number, FsStatus status) {
    events_.push_back({.anyKind = true, .kind = FsCall::Open, .number = number, .status = status});
}

void FaultyFileSystem::EndReadEarly(unsigned number, std::size_t bytes) {
    events_.push_back(
        {.anyKind = false, .kind = FsCall::Read, .number = number, .readAtMost = bytes});
}

void FaultyFileSystem::Before(FsCall kind, unsigned number, std::function<void()> hook) {
    events_.push_back({.anyKind = false, .kind = kind, .number = number, .hook = std::move(hook)});
}

void FaultyFileSystem::Reset() {
    events_.clear();
    calls_.clear();
    writtenBytes_ = 0;
}

bool FaultyFileSystem::AllMet() const {
    return std::ranges::all_of(events_, [](const Event& event) { return event.number == 0; });
}

const FaultyFileSystem::Event* FaultyFileSystem::Meet(FsCall kind) {
    calls_.push_back(kind);
    const Event* met = nullptr;
    for (Event& event : events_) {
        if (event.number == 0 || (!event.anyKind && event.kind != kind)) continue;
        if (--event.number != 0) continue;
        if (event.hook) event.hook();
        met = &event;
    }
    return met;
}

FsStatus FaultyFileSystem::StatusFor(FsCall kind, const std::function<FsStatus()>& call) {
    const Event* event = Meet(kind);
    return event != nullptr && event->status != FsStatus::Ok ? event->status : call();
}

OpenResult FaultyFileSystem::Opened(FsCall kind, const std::function<OpenResult()>& call) {
    const Event* event = Meet(kind);
    if (event != nullptr && event->status != FsStatus::Ok) return {event->status, nullptr};
    OpenResult result = call();
    if (result.file) result.file = std::make_unique<FaultyFile>(*this, std::move(result.file));
    return result;
}

OpenResult FaultyFileSystem::OpenForReading(const std::string& path) {
    return Opened(FsCall::Open, [&] { return inner_.OpenForReading(path); });
}

OpenResult FaultyFileSystem::OpenForOverwriting(const std::string& path) {
    return Opened(FsCall::Open, [&] { return inner_.OpenForOverwriting(path); });
}

OpenResult FaultyFileSystem::OpenForPurging(const std::string& path) {
    return Opened(FsCall::Open, [&] { return inner_.OpenForPurging(path); });
}

OpenResult FaultyFileSystem::OpenLocked(const std::string& path) {
    return Opened(FsCall::Open, [&] { return inner_.OpenLocked(path); });
}

OpenResult FaultyFileSystem::CreateExclusively(const std::string& path) {
    return Opened(FsCall::Create, [&] { return inner_.CreateExclusively(path); });
}

FsStatus FaultyFileSystem::RenameWithoutReplacing(const std::string& from, const std::string& to) {
    return StatusFor(FsCall::Rename, [&] { return inner_.RenameWithoutReplacing(from, to); });
}

FsStatus FaultyFileSystem::RenameReplacing(const std::string& from, const std::string& to) {
    return StatusFor(FsCall::Rename, [&] { return inner_.RenameReplacing(from, to); });
}

FsStatus FaultyFileSystem::Remove(const std::string& path) {
    return StatusFor(FsCall::Remove, [&] { return inner_.Remove(path); });
}

FsStatus FaultyFileSystem::FlushFolderOf(const std::string& path) {
    return StatusFor(FsCall::FlushFolder, [&] { return inner_.FlushFolderOf(path); });
}

FsStatus FaultyFileSystem::MakeFolder(const std::string& path) {
    return StatusFor(FsCall::MakeFolder, [&] { return inner_.MakeFolder(path); });
}

FsStatus FaultyFileSystem::RemoveFolder(const std::string& path) {
    return StatusFor(FsCall::RemoveFolder, [&] { return inner_.RemoveFolder(path); });
}

} // namespace zr5::test
