#include "libs/cipher/jobs.h"
#include "libs/cipher/sealed_reader.h"
#include "libs/system/paths.h"

#include <algorithm>
#include <array>
#include <cstring>

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

/// Reads the input piece by piece and writes header and sealed blocks.
EngineResult SealAll(JobContext& job, OpenFile& input, std::uint64_t lengthBytes,
                     BlockCipher& cipher, PendingOutput& output) {
    std::size_t filled = HeaderBytes; // the header stands at the head of the first piece
    std::uint64_t number = 0;
    for (std::uint64_t done = 0; done < lengthBytes;) {
        const auto piece = job.plainBuffer.first(
            static_cast<std::size_t>(std::min<std::uint64_t>(PlainPieceBytes, lengthBytes - done)));
        const ReadResult got = input.Read(piece);
        if (got.status != FsStatus::Ok || got.count != piece.size()) return EngineResult::ReadError;
        for (std::size_t at = 0; at < piece.size(); at += PlainBlockBytes, ++number) {
            const auto plain = piece.subspan(at, std::min(PlainBlockBytes, piece.size() - at));
            const auto sealed = job.sealedBuffer.subspan(filled, plain.size() + TagBytes);
            const bool isLast = done + at + plain.size() == lengthBytes;
            if (!cipher.Seal(number, isLast, plain, sealed)) return EngineResult::LibraryFailed;
            filled += sealed.size();
        }
        const EngineResult result = ResultOfOutput(output.Write(job.sealedBuffer.first(filled)));
        if (result != EngineResult::Success) return result;
        filled = 0;
        done += piece.size();
        job.ShowProgress(done, lengthBytes);
        if (job.IsStopped()) return EngineResult::Stopped;
    }
    return EngineResult::Success;
}

/// Whether the reader's next piece is what `plain` holds next. The sealed bytes have been opened
/// by then, so that the plain file's take their place in the buffer.
EngineResult CompareNext(JobContext& job, SealedReader& reader, OpenFile& plain) {
    const SealedReader::Piece piece = reader.Next();
    if (piece.isCutShort || reader.Damage().Any()) return EngineResult::WriteError;
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
    const SecretBytes* master = job.masters.For(runSalt);
    if (master == nullptr) return EngineResult::NotInitialised;
    const SecretBytes blockKey =
        MakeHeader(*master, runSalt, job.random, job.sealedBuffer.first<HeaderBytes>());
    if (blockKey.empty()) return EngineResult::LibraryFailed;
    BlockCipher cipher(blockKey);

    PendingOutput output(job.fileSystem, job.random, job.outputPath, job.hooks.observer);
    EngineResult result = ResultOfOutput(output.Begin(EncryptedLength(before->lengthBytes)));
    if (result == EngineResult::Success) {
        result = SealAll(job, *input.file, before->lengthBytes, cipher, output);
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
    EngineResult result = reader.ReadHeader(sealedInfo->lengthBytes);
    if (result == EngineResult::NotInitialised) return result;
    if (result != EngineResult::Success) return EngineResult::WriteError;
    while (result == EngineResult::Success && !reader.IsAtEnd()) {
        result = CompareNext(job, reader, *plain.file);
        job.ShowProgress(reader.ReadBytes(), reader.TotalBytes());
        if (job.IsStopped()) return EngineResult::Stopped;
    }
    return result;
}

} // namespace zr5
