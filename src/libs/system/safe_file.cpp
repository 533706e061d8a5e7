#include "libs/system/safe_file.h"

#include "libs/system/overwriting.h"
#include "libs/system/paths.h"
#include "libs/system/text_encoding.h"

#include <array>
#include <utility>

namespace zr5 {
namespace {

constexpr int MostNames = 100;
/// Setups and keyfiles are shorter by far.
constexpr std::uint64_t MostReplaced = std::uint64_t{1} << 20U;
constexpr std::string_view PartPrefix = ".zr5-";
constexpr std::string_view PartSuffix = ".part";
constexpr std::size_t PartRandomBytes = 8;
constexpr int MostSalvages = 999;

/// Of making a file or giving it a name.
FsStatus OfNaming(FsStatus status) {
    return status == FsStatus::Ok || status == FsStatus::NoSpace ? status : FsStatus::NotPermitted;
}

} // namespace

PendingOutput::PendingOutput(FileSystem& fileSystem, RandomSource& random, std::string outputPath,
                             OutputObserver* observer, Discarding discarding)
    : fileSystem_(fileSystem),
      random_(random),
      outputPath_(std::move(outputPath)),
      observer_(observer),
      discarding_(std::move(discarding)) {}

PendingOutput::~PendingOutput() {
    discarding_.progress = {};
    Discard();
}

/// Of work on a part that was made: nothing but a full disk has a result of its own.
FsStatus PendingOutput::OfWriting(FsStatus status) const {
    if (status == FsStatus::TooLarge && observer_ != nullptr) observer_->IsTooLarge();
    return status == FsStatus::Ok || status == FsStatus::NoSpace ? status : FsStatus::IoError;
}

/// A part is overwritten under its own name, by which it is found again if that is interrupted; an
/// output has to give up its name first, under which nobody must find half of it.
void PendingOutput::Discard() {
    if (partPath_.empty()) return;
    const std::string path = std::exchange(partPath_, {});
    const auto named = fileSystem_.Info(path);
    const auto own = part_->Info();
    if (named && own && named->identity != own->identity) return; // somebody else's
    const auto overwrite = [this] {
        static_cast<void>(Overwriting(random_, writtenBytes_).Run(*part_, discarding_.progress));
    };
    const bool overwrites = discarding_.overwrites && named;
    const bool isPart = IsPartName(SplitPath(path).name);
    if (overwrites && isPart) overwrite();
    const FsStatus removed = fileSystem_.Remove(path);
    if (overwrites && !isPart && removed == FsStatus::Ok) overwrite();
}

/// A short hidden name in the output's folder: as likely to exist already as a guess of 64 bits
/// is to be right, and never too long.
std::string PendingOutput::NewPartPath() {
    std::array<std::byte, PartRandomBytes> bytes{};
    random_.Fill(bytes);
    std::string path = SplitPath(outputPath_).folder + std::string(PartPrefix);
    for (const std::byte byte : bytes)
        AppendHex(path, byte, HexDigits::Lower);
    return path + std::string(PartSuffix);
}

FsStatus PendingOutput::Begin(std::uint64_t lengthBytes) {
    if (const auto existing = fileSystem_.Info(outputPath_)) {
        if (existing->kind != FileKind::Regular ||
            (observer_ != nullptr && !observer_->MayReplace(*existing))) {
            return FsStatus::NotPermitted;
        }
        OpenResult opened = fileSystem_.OpenForOverwriting(outputPath_);
        if (opened.status != FsStatus::Ok) return FsStatus::NotPermitted;
        replaced_ = std::move(opened.file);
        replacedInfo_ = *existing;
    }
    FsStatus status = MakePart();
    if (status == FsStatus::Ok) status = OfWriting(part_->Reserve(lengthBytes));
    // Else a power failure could leave the content on the disk and no file there to find it by.
    if (status == FsStatus::Ok && discarding_.overwrites) status = OfWriting(part_->Flush());
    return status;
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

FsStatus PendingOutput::LeaveGap(std::uint64_t lengthBytes) {
    writtenBytes_ += lengthBytes;
    writeback_ = Writeback(writtenBytes_);
    return OfWriting(part_->MoveTo(writtenBytes_));
}

FsStatus PendingOutput::Write(std::span<const std::byte> bytes) {
    const FsStatus status = part_->Write(bytes);
    if (status != FsStatus::Ok) return OfWriting(status);
    writtenBytes_ += bytes.size();
    writeback_.Wrote(*part_, bytes.size());
    return FsStatus::Ok;
}

FsStatus PendingOutput::TakeAttributes(const OpenFile& source) {
    if (observer_ != nullptr && observer_->StandsForSource()) {
        return part_->CopyAttributesFrom(source);
    }
    return Replaces() ? part_->CopyAttributesFrom(*replaced_) : part_->TakeModeFrom(source);
}

FsStatus PendingOutput::TakeName() {
    const auto existing = fileSystem_.Info(outputPath_);
    if (!existing) return fileSystem_.RenameWithoutReplacing(partPath_, outputPath_);
    const bool isSame = Replaces() && existing->identity == replacedInfo_.identity;
    if (!isSame && (observer_ == nullptr || !observer_->MayReplace(*existing))) {
        return FsStatus::NotPermitted;
    }
    return fileSystem_.RenameReplacing(partPath_, outputPath_);
}

FsStatus PendingOutput::Commit(const OpenFile& source) {
    const FsStatus status = TakeAttributes(source);
    return status == FsStatus::Ok ? CommitPrivate() : OfWriting(status);
}

FsStatus PendingOutput::Tell(const std::string& path) {
    if (observer_ == nullptr) return FsStatus::Ok;
    const auto info = part_->Info();
    return info && observer_->WillName(*info, path) ? FsStatus::Ok : FsStatus::IoError;
}

FsStatus PendingOutput::CommitPrivate() {
    FsStatus status = OfWriting(part_->Flush());
    if (status == FsStatus::Ok) status = Tell(outputPath_);
    if (status != FsStatus::Ok) return status;
    status = TakeName();
    if (status != FsStatus::Ok) return OfNaming(status);
    // From here on the file stands under its own name. If its name cannot be brought to the
    // disk, a new output is taken back; one that was replaced cannot be.
    partPath_ = Replaces() ? std::string{} : outputPath_;
    status = OfWriting(fileSystem_.FlushFolderOf(outputPath_));
    if (status == FsStatus::Ok) partPath_.clear();
    return status;
}

FsStatus PendingOutput::Salvage(const OpenFile& source, const std::string& base) {
    FsStatus status = OfWriting(part_->Truncate(writtenBytes_));
    if (status == FsStatus::Ok) status = OfWriting(TakeAttributes(source));
    if (status == FsStatus::Ok) status = OfWriting(part_->Flush());
    if (status == FsStatus::Ok) status = TakeSalvageName(base);
    if (status == FsStatus::Ok) status = OfWriting(fileSystem_.FlushFolderOf(partPath_));
    if (status == FsStatus::Ok) partPath_.clear();
    return status;
}

FsStatus PendingOutput::TakeSalvageName(const std::string& base) {
    for (int number = 1; number <= MostSalvages; ++number) {
        std::string path = NumberedName(fileSystem_, base, std::string(SalvageSuffix), number);
        if (fileSystem_.Info(path)) continue;
        FsStatus status = Tell(path);
        if (status == FsStatus::Ok) status = fileSystem_.RenameWithoutReplacing(partPath_, path);
        if (status == FsStatus::AlreadyExists) continue;
        if (status == FsStatus::Ok) partPath_ = std::move(path);
        return status == FsStatus::IoError ? status : OfNaming(status);
    }
    return FsStatus::NotPermitted;
}

void PendingOutput::OverwriteReplaced() {
    const auto info = Replaces() ? replaced_->Info() : std::nullopt;
    if (!info || info->linkCount != 0 || info->lengthBytes > MostReplaced) return;
    static_cast<void>(Overwriting(random_, info->lengthBytes).Run(*replaced_));
}

bool IsPartName(std::string_view name) {
    if (!name.starts_with(PartPrefix) || !name.ends_with(PartSuffix)) return false;
    name.remove_prefix(PartPrefix.size());
    return name.size() == 2 * PartRandomBytes + PartSuffix.size() &&
           name.find_first_not_of("0123456789abcdef") == 2 * PartRandomBytes;
}

FsStatus WriteSafely(FileSystem& fileSystem, RandomSource& random, const std::string& path,
                     std::span<const std::byte> content, IfThere ifThere) {
    PendingOutput file(fileSystem, random, path, nullptr, {.overwrites = true});
    FsStatus status = file.Begin(content.size());
    if (file.Replaces() && ifThere == IfThere::Refuse) return FsStatus::AlreadyExists;
    if (status == FsStatus::Ok) status = file.Write(content);
    if (status == FsStatus::Ok) status = file.CommitPrivate();
    if (status == FsStatus::Ok) file.OverwriteReplaced();
    return status;
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
