#include "libs/cipher/jobs.h"
#include "libs/cipher/sealed_reader.h"
#include "libs/system/paths.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <utility>

namespace zr5 {
namespace {

/// Whether the input is still as long as it was and nobody has written to it since.
bool IsUnchanged(OpenFile& input, const FileInfo& before) {
    std::array<std::byte, 1> more{};
    const ReadResult end = input.Read(more);
    const auto after = input.Info();
    return end.status == FsStatus::Ok && end.count == 0 && after &&
           after->lengthBytes == before.lengthBytes && after->modifiedNs == before.modifiedNs;
}

/// Makes the encrypted file from its first byte to its last, a piece at a time.
class Sealing {
  public:
    Sealing(JobContext& job, const RunSalt& runSalt, const FileInfo& input, PendingOutput& output)
        : job_(job), runSalt_(runSalt), input_(input), output_(output) {}

    [[nodiscard]] bool IsDone() const { return doneBytes_ == input_.lengthBytes; }
    [[nodiscard]] std::uint64_t DoneBytes() const { return doneBytes_; }
    /// Where the next piece of the plaintext is to be read to.
    [[nodiscard]] std::span<std::byte> Room() const {
        return job_.plainBuffer.first(static_cast<std::size_t>(
            std::min<std::uint64_t>(PlainPieceBytes, input_.lengthBytes - doneBytes_)));
    }

    /// Seals and writes what stands in `Room`.
    [[nodiscard]] EngineResult Add() {
        const auto piece = Room();
        if (!cipher_) {
            const EngineResult begun = Begin(piece);
            if (begun != EngineResult::Success) return begun;
        }
        for (std::size_t at = 0; at < piece.size(); at += PlainBlockBytes) {
            const auto plain = piece.subspan(at, std::min(PlainBlockBytes, piece.size() - at));
            const auto sealed = job_.sealedBuffer.subspan(filled_, plain.size() + TagBytes);
            if (!cipher_->Seal(number_++, plain, sealed)) return EngineResult::LibraryFailed;
            filled_ += sealed.size();
        }
        doneBytes_ += piece.size();
        if (IsDone()) PutHeader();
        return ResultOfOutput(
            output_.Write(job_.sealedBuffer.first(std::exchange(filled_, std::size_t{0}))));
    }

  private:
    /// The file salt depends on the content.
    EngineResult Begin(std::span<const std::byte> firstPiece) {
        const auto master = job_.masters.For(runSalt_);
        if (!master) return EngineResult::NotInitialised;
        const auto fileSalt = job_.fileSalts.Next(*master, input_, firstPiece);
        if (!fileSalt) return EngineResult::LibraryFailed;
        auto header = MakeHeader(*master, runSalt_, *fileSalt, input_.lengthBytes);
        if (!header) return EngineResult::LibraryFailed;
        image_ = header->image;
        cipher_.emplace(header->blockKey);
        PutHeader();
        return EngineResult::Success;
    }

    void PutHeader() {
        std::ranges::copy(image_, job_.sealedBuffer.subspan(filled_).begin());
        filled_ += image_.size();
    }

    JobContext& job_;
    const RunSalt& runSalt_;
    const FileInfo& input_;
    PendingOutput& output_;
    HeaderImage image_{};
    std::optional<BlockCipher> cipher_; ///< set with the first piece
    std::size_t filled_ = 0;            ///< of the buffer
    std::uint64_t number_ = 0;          ///< of the next block
    std::uint64_t doneBytes_ = 0;
};

EngineResult SealAll(JobContext& job, OpenFile& input, Sealing& sealing, std::uint64_t totalBytes) {
    while (!sealing.IsDone()) {
        const auto room = sealing.Room();
        const ReadResult got = input.Read(room);
        if (got.status != FsStatus::Ok || got.count != room.size()) return EngineResult::ReadError;
        const EngineResult result = sealing.Add();
        if (result != EngineResult::Success) return result;
        job.ShowProgress(sealing.DoneBytes(), totalBytes);
        if (job.IsStopped()) return EngineResult::Stopped;
    }
    return EngineResult::Success;
}

/// Whether the reader's next piece is what `plain` holds next. The sealed bytes have been opened
/// by then, so that the plain file's take their place in the buffer.
EngineResult CompareNext(JobContext& job, SealedReader& reader, OpenFile& plain) {
    const SealedReader::Piece piece = reader.Next();
    if (piece.isCutShort) return EngineResult::WriteError;
    const auto expected = job.sealedBuffer.first(piece.plain.size());
    const ReadResult got = plain.Read(expected);
    if (got.status != FsStatus::Ok) return EngineResult::ReadError;
    // Many times as fast as a loop over bytes.
    const bool isSame = got.count == expected.size() &&
                        std::memcmp(expected.data(), piece.plain.data(), expected.size()) == 0;
    return isSame ? EngineResult::Success : EngineResult::WriteError;
}

} // namespace

EngineResult ResultOfInput(FsStatus status) {
    return status == FsStatus::NotFound ? EngineResult::InputNotFound
                                        : EngineResult::InputNotOpened;
}

EngineResult ResultOfOutput(FsStatus status) {
    if (status == FsStatus::Ok) return EngineResult::Success;
    if (status == FsStatus::NoSpace) return EngineResult::DiskFull;
    return status == FsStatus::NotPermitted ? EngineResult::OutputNotOpened
                                            : EngineResult::WriteError;
}

EngineResult RunEncryption(JobContext& job, const RunSalt& runSalt) {
    const OpenResult input = job.fileSystem.OpenForReading(job.inputPath);
    if (input.status != FsStatus::Ok) return ResultOfInput(input.status);
    if (SameFile(job.fileSystem, job.inputPath, job.outputPath)) {
        return EngineResult::OutputNotOpened;
    }
    const auto before = input.file->Info();
    if (!before || before->lengthBytes == 0) return EngineResult::ReadError;
    if (before->lengthBytes > MostPlainBytes) return EngineResult::ReadError;
    // The slow part, before there is anything to undo.
    if (!job.masters.For(runSalt)) return EngineResult::NotInitialised;

    PendingOutput output(job.fileSystem, job.random, job.outputPath, job.hooks.observer);
    EngineResult result = ResultOfOutput(output.Begin(EncryptedLength(before->lengthBytes)));
    if (result == EngineResult::Success) {
        Sealing sealing(job, runSalt, *before, output);
        result = SealAll(job, *input.file, sealing, before->lengthBytes);
    }
    if (result != EngineResult::Success) return result;
    if (!IsUnchanged(*input.file, *before)) return EngineResult::ReadError;
    return ResultOfOutput(output.Commit(*input.file));
}

EngineResult RunVerification(JobContext& job) {
    const OpenResult plain = job.fileSystem.OpenForReading(job.inputPath);
    if (plain.status != FsStatus::Ok) return ResultOfInput(plain.status);
    const OpenResult sealed = job.fileSystem.OpenForReading(job.outputPath);
    if (sealed.status != FsStatus::Ok) return EngineResult::WriteError;
    sealed.file->ForgetCached(0, 0);
    const auto plainInfo = plain.file->Info();
    const auto sealedInfo = sealed.file->Info();
    if (!plainInfo) return EngineResult::ReadError;
    if (!sealedInfo || sealedInfo->lengthBytes != EncryptedLength(plainInfo->lengthBytes)) {
        return EngineResult::WriteError;
    }
    SealedReader reader(job, *sealed.file);
    EngineResult result = reader.ReadHeaders(sealedInfo->lengthBytes);
    if (result == EngineResult::NotInitialised) return result;
    if (result != EngineResult::Success) return EngineResult::WriteError;
    while (result == EngineResult::Success && !reader.IsAtEnd()) {
        result = CompareNext(job, reader, *plain.file);
        job.ShowProgress(reader.ReadBytes(), reader.TotalBytes());
        if (job.IsStopped()) return EngineResult::Stopped;
    }
    if (result != EngineResult::Success) return result;
    return reader.Result() == EngineResult::Success ? result : EngineResult::WriteError;
}

} // namespace zr5
