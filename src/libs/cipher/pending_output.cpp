#include "libs/cipher/pending_output.h"

#include <array>

namespace zr5 {
namespace {

constexpr int MostNames = 100;

std::int32_t CodeOf(FsStatus status) {
    switch (status) {
    case FsStatus::Ok:
        return engine_code::Success;
    case FsStatus::NoSpace:
        return engine_code::DiskFull;
    case FsStatus::NotFound:
    case FsStatus::NotPermitted:
    case FsStatus::AlreadyExists:
    case FsStatus::NotRegularFile:
    case FsStatus::IoError:
        return engine_code::WriteError;
    }
    return engine_code::WriteError;
}

} // namespace

PendingOutput::PendingOutput(FileSystem& fileSystem, RandomSource& random, std::string outputPath,
                             OutputObserver* observer)
    : fileSystem_(fileSystem),
      random_(random),
      outputPath_(std::move(outputPath)),
      observer_(observer) {}

PendingOutput::~PendingOutput() {
    file_.reset();
    if (!temporaryPath_.empty()) static_cast<void>(fileSystem_.Remove(temporaryPath_));
}

/// A short hidden name in the output's folder: as likely to exist already as a guess of 64 bits
/// is to be right, and never too long.
std::string PendingOutput::NewName() {
    constexpr std::string_view Digits = "0123456789abcdef";
    std::array<std::byte, 8> bytes{};
    random_.Fill(bytes);
    std::string name = outputPath_.substr(0, outputPath_.rfind('/') + 1) + ".zr5-";
    for (const std::byte byte : bytes) {
        name += Digits[std::to_integer<unsigned>(byte) >> 4U];
        name += Digits[std::to_integer<unsigned>(byte) & 0xFU];
    }
    return name + ".part";
}

std::int32_t PendingOutput::Begin(std::uint64_t lengthBytes) {
    if (const auto existing = fileSystem_.Info(outputPath_)) {
        if (existing->kind != FileKind::Regular ||
            (observer_ != nullptr && !observer_->MayReplace()) ||
            fileSystem_.OpenForOverwriting(outputPath_).status != FsStatus::Ok) {
            return engine_code::OutputNotOpened;
        }
        replaces_ = true;
    }
    const std::int32_t code = MakeFile();
    return code == engine_code::Success ? CodeOf(file_->Reserve(lengthBytes)) : code;
}

std::int32_t PendingOutput::MakeFile() {
    OpenResult made{FsStatus::AlreadyExists, nullptr};
    std::string path;
    for (int i = 0; i < MostNames && made.status == FsStatus::AlreadyExists; ++i) {
        path = NewName();
        if (observer_ != nullptr && !observer_->WillMake(path)) return engine_code::WriteError;
        made = fileSystem_.CreateExclusively(path);
    }
    if (made.status == FsStatus::NoSpace) return engine_code::DiskFull;
    if (made.status != FsStatus::Ok) return engine_code::OutputNotOpened;
    temporaryPath_ = std::move(path);
    file_ = std::move(made.file);
    if (observer_ != nullptr) observer_->HasMade();
    return engine_code::Success;
}

std::int32_t PendingOutput::Write(std::span<const std::byte> bytes) {
    const FsStatus status = file_->Write(bytes);
    if (status != FsStatus::Ok) return CodeOf(status);
    writtenBytes_ += bytes.size();
    writeback_.Wrote(*file_, bytes.size());
    return engine_code::Success;
}

FsStatus PendingOutput::TakeName() {
    return replaces_ ? fileSystem_.RenameReplacing(temporaryPath_, outputPath_)
                     : fileSystem_.RenameWithoutReplacing(temporaryPath_, outputPath_);
}

std::int32_t PendingOutput::Commit(const OpenFile& source, Extent extent) {
    const FsStatus status = file_->CopyAttributesFrom(source);
    return status == FsStatus::Ok ? CommitPrivate(extent) : CodeOf(status);
}

std::int32_t PendingOutput::CommitPrivate(Extent extent) {
    FsStatus status = file_->Flush();
    if (status != FsStatus::Ok) return CodeOf(status);
    if (observer_ != nullptr) {
        const auto info = file_->Info();
        if (!info || !observer_->WillName(*info, extent)) return engine_code::WriteError;
    }
    status = TakeName();
    if (status == FsStatus::NoSpace) return engine_code::DiskFull;
    if (status != FsStatus::Ok) return engine_code::OutputNotOpened;
    // From here on the file stands under its own name. If its name cannot be brought to the
    // disk, a new output is taken back; one that was replaced cannot be.
    temporaryPath_ = replaces_ ? std::string{} : outputPath_;
    status = fileSystem_.FlushFolderOf(outputPath_);
    if (status != FsStatus::Ok) return CodeOf(status);
    temporaryPath_.clear();
    return engine_code::Success;
}

std::int32_t PendingOutput::CommitPart(const OpenFile& source) {
    const FsStatus status = file_->Truncate(writtenBytes_);
    return status == FsStatus::Ok ? Commit(source, Extent::Part) : CodeOf(status);
}

} // namespace zr5
