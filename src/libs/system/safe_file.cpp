#include "libs/system/safe_file.h"

#include "libs/system/paths.h"
#include "libs/system/text_encoding.h"

#include <array>

namespace zr5 {
namespace {

constexpr int MostNames = 100;

/// Of work on a part that was made: nothing but a full disk has a reason of its own.
FsStatus OfWriting(FsStatus status) {
    return status == FsStatus::Ok || status == FsStatus::NoSpace ? status : FsStatus::IoError;
}

/// Of making a file or giving it a name.
FsStatus OfNaming(FsStatus status) {
    return status == FsStatus::Ok || status == FsStatus::NoSpace ? status : FsStatus::NotPermitted;
}

} // namespace

PendingOutput::PendingOutput(FileSystem& fileSystem, RandomSource& random, std::string outputPath,
                             OutputObserver* observer)
    : fileSystem_(fileSystem),
      random_(random),
      outputPath_(std::move(outputPath)),
      observer_(observer) {}

PendingOutput::~PendingOutput() {
    part_.reset();
    if (!partPath_.empty()) static_cast<void>(fileSystem_.Remove(partPath_));
}

/// A short hidden name in the output's folder: as likely to exist already as a guess of 64 bits
/// is to be right, and never too long.
std::string PendingOutput::NewPartPath() {
    std::array<std::byte, 8> bytes{};
    random_.Fill(bytes);
    std::string path = SplitPath(outputPath_).folder + ".zr5-";
    for (const std::byte byte : bytes)
        AppendHex(path, byte, HexDigits::Lower);
    return path + ".part";
}

FsStatus PendingOutput::Begin(std::uint64_t lengthBytes) {
    if (const auto existing = fileSystem_.Info(outputPath_)) {
        if (existing->kind != FileKind::Regular ||
            (observer_ != nullptr && !observer_->MayReplace()) ||
            fileSystem_.OpenForOverwriting(outputPath_).status != FsStatus::Ok) {
            return FsStatus::NotPermitted;
        }
        replaces_ = true;
    }
    const FsStatus status = MakePart();
    return status == FsStatus::Ok ? OfWriting(part_->Reserve(lengthBytes)) : status;
}

FsStatus PendingOutput::MakePart() {
    OpenResult made{FsStatus::AlreadyExists, nullptr};
    std::string path;
    for (int i = 0; i < MostNames && made.status == FsStatus::AlreadyExists; ++i) {
        path = NewPartPath();
        if (observer_ != nullptr && !observer_->WillMake(path)) return FsStatus::IoError;
        made = fileSystem_.CreateExclusively(path);
    }
    if (made.status != FsStatus::Ok) return OfNaming(made.status);
    partPath_ = std::move(path);
    part_ = std::move(made.file);
    if (observer_ != nullptr) observer_->HasMade();
    return FsStatus::Ok;
}

FsStatus PendingOutput::Write(std::span<const std::byte> bytes) {
    const FsStatus status = part_->Write(bytes);
    if (status != FsStatus::Ok) return OfWriting(status);
    writtenBytes_ += bytes.size();
    writeback_.Wrote(*part_, bytes.size());
    return FsStatus::Ok;
}

FsStatus PendingOutput::TakeName() {
    return replaces_ ? fileSystem_.RenameReplacing(partPath_, outputPath_)
                     : fileSystem_.RenameWithoutReplacing(partPath_, outputPath_);
}

FsStatus PendingOutput::Commit(const OpenFile& source, Extent extent) {
    const FsStatus status = part_->CopyAttributesFrom(source);
    return status == FsStatus::Ok ? CommitPrivate(extent) : OfWriting(status);
}

FsStatus PendingOutput::CommitPrivate(Extent extent) {
    FsStatus status = part_->Flush();
    if (status != FsStatus::Ok) return OfWriting(status);
    if (observer_ != nullptr) {
        const auto info = part_->Info();
        if (!info || !observer_->WillName(*info, extent)) return FsStatus::IoError;
    }
    status = TakeName();
    if (status != FsStatus::Ok) return OfNaming(status);
    // From here on the file stands under its own name. If its name cannot be brought to the
    // disk, a new output is taken back; one that was replaced cannot be.
    partPath_ = replaces_ ? std::string{} : outputPath_;
    status = fileSystem_.FlushFolderOf(outputPath_);
    if (status != FsStatus::Ok) return OfWriting(status);
    partPath_.clear();
    return FsStatus::Ok;
}

FsStatus PendingOutput::CommitPart(const OpenFile& source) {
    const FsStatus status = part_->Truncate(writtenBytes_);
    return status == FsStatus::Ok ? Commit(source, Extent::Part) : OfWriting(status);
}

FsStatus WriteSafely(FileSystem& fileSystem, RandomSource& random, const std::string& path,
                     std::span<const std::byte> content, IfThere ifThere) {
    PendingOutput file(fileSystem, random, path);
    FsStatus status = file.Begin(content.size());
    if (file.Replaces() && ifThere == IfThere::Refuse) return FsStatus::AlreadyExists;
    if (status == FsStatus::Ok) status = file.Write(content);
    return status == FsStatus::Ok ? file.CommitPrivate() : status;
}

FirstBytes ReadFirstBytes(FileSystem& fileSystem, const std::string& path, std::size_t most) {
    FirstBytes first{FsStatus::Ok, SecretBytes(most), 0};
    const OpenResult opened = fileSystem.OpenForReading(path);
    first.status = opened.status;
    if (opened.status != FsStatus::Ok) return first;
    const ReadResult read = opened.file->Read(first.bytes.bytes());
    first.status = read.status;
    first.count = read.count;
    return first;
}

} // namespace zr5
