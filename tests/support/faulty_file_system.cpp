#include "support/faulty_file_system.h"

#include <algorithm>

namespace zr5::test {

class FaultyFile : public OpenFile {
  public:
    FaultyFile(FaultyFileSystem& disk, std::unique_ptr<OpenFile> inner)
        : disk_(disk), inner_(std::move(inner)) {}

    ReadResult Read(std::span<std::byte> into) override {
        const auto* event = disk_.Meet(FsCall::Read);
        if (event != nullptr && event->status != FsStatus::Ok) {
            static_cast<void>(inner_->Read(into.first(into.size() / 2)));
            return {event->status, 0};
        }
        if (event != nullptr && event->readAtMost)
            into = into.first(std::min(into.size(), *event->readAtMost));
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
    FsStatus MoveTo(std::uint64_t offset) override {
        return disk_.StatusFor(FsCall::MoveTo, [&] { return inner_->MoveTo(offset); });
    }
    void ForgetCached(std::uint64_t offset, std::uint64_t lengthBytes) override {
        inner_->ForgetCached(offset, lengthBytes);
    }
    FsStatus CopyAttributesFrom(const OpenFile& source) override {
        return disk_.StatusFor(FsCall::CopyAttributes,
                               [&] { return inner_->CopyAttributesFrom(source); });
    }
    FsStatus TakeModeFrom(const OpenFile& source) override {
        return disk_.StatusFor(FsCall::CopyAttributes,
                               [&] { return inner_->TakeModeFrom(source); });
    }
    ByteRange NextData(std::uint64_t offset) const override { return inner_->NextData(offset); }
    bool HasRoomToOverwrite() const override { return inner_->HasRoomToOverwrite(); }
    std::optional<FileInfo> Info() const override {
        return disk_.Fails(FsCall::FileInfo) ? std::nullopt : inner_->Info();
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
        if (event.number == 0 || (event.kind && event.kind != kind)) continue;
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
    OpenResult result{FsStatus::Ok, nullptr};
    result.status = StatusFor(kind, [&] { return (result = call()).status; });
    if (result.file) result.file = std::make_unique<FaultyFile>(*this, std::move(result.file));
    return result;
}

} // namespace zr5::test
