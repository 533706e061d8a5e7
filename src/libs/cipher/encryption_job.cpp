#include "libs/cipher/pending_output.h"
#include "libs/cipher/zr5_jobs.h"

#include <algorithm>

namespace zr5 {
namespace {

/// Fills in the 84 bytes of the header and gives the block key; empty when the library failed.
SecretBytes MakeHeader(const SecretBytes& master, const RunSalt& runSalt, RandomSource& random,
                       std::span<std::byte> header) {
    std::array<std::byte, FileSaltBytes> fileSalt{};
    random.Fill(fileSalt);
    std::ranges::copy(Magic, header.begin());
    std::ranges::copy(runSalt, header.subspan(RunSaltAt).begin());
    std::ranges::copy(fileSalt, header.subspan(FileSaltAt).begin());
    FileKeys keys = DeriveFileKeys(master, fileSalt);
    Tag256 tag{};
    if (keys.header.empty() || !HmacSha256(keys.header.bytes(), header.first(HeaderTagAt), tag)) {
        return {};
    }
    std::ranges::copy(tag, header.subspan(HeaderTagAt).begin());
    return std::move(keys.block);
}

/// Whether the input is still as long as it was and nobody has written to it since.
bool IsUnchanged(OpenFile& input, const FileInfo& before) {
    std::array<std::byte, 1> more{};
    const ReadResult end = input.Read(more);
    const auto after = input.Info();
    return end.status == FsStatus::Ok && end.count == 0 && after &&
           after->lengthBytes == before.lengthBytes && after->modifiedNs == before.modifiedNs;
}

/// Reads the input piece by piece and writes header and sealed blocks.
std::int32_t SealAll(JobContext& job, OpenFile& input, std::uint64_t lengthBytes,
                     BlockCipher& cipher, PendingOutput& output) {
    std::size_t filled = HeaderBytes; // the header stands at the head of the first piece
    std::uint64_t number = 0;
    for (std::uint64_t done = 0; done < lengthBytes;) {
        const auto piece = job.plainBuffer.first(
            static_cast<std::size_t>(std::min<std::uint64_t>(PlainPieceBytes, lengthBytes - done)));
        const ReadResult got = input.Read(piece);
        if (got.status != FsStatus::Ok || got.count != piece.size()) return engine_code::ReadError;
        for (std::size_t at = 0; at < piece.size(); at += BlockBytes, ++number) {
            const auto plain = piece.subspan(at, std::min(BlockBytes, piece.size() - at));
            const auto sealed = job.sealedBuffer.subspan(filled, plain.size() + TagBytes);
            const bool isLast = done + at + plain.size() == lengthBytes;
            if (!cipher.Seal(number, isLast, plain, sealed)) return engine_code::NotInitialised;
            filled += sealed.size();
        }
        const std::int32_t code = output.Write(job.sealedBuffer.first(filled));
        if (code != engine_code::Success) return code;
        filled = 0;
        done += piece.size();
        if (job.progress) job.progress(done, lengthBytes);
    }
    return engine_code::Success;
}

} // namespace

std::int32_t InputCode(FsStatus status) {
    return status == FsStatus::NotFound ? engine_code::InputNotFound : engine_code::InputNotOpened;
}

std::int32_t RunEncryption(JobContext& job, const RunSalt& runSalt) {
    OpenResult input = job.fileSystem.OpenForReading(job.inputPath);
    if (input.status != FsStatus::Ok) return InputCode(input.status);
    if (SameFile(job.fileSystem, job.inputPath, job.outputPath)) {
        return engine_code::OutputNotOpened;
    }
    const auto before = input.file->Info();
    if (!before || before->lengthBytes == 0) return engine_code::ReadError;

    const SecretBytes* master = job.masters.For(runSalt);
    if (master == nullptr) return engine_code::NotInitialised;
    const SecretBytes blockKey =
        MakeHeader(*master, runSalt, job.random, job.sealedBuffer.first(HeaderBytes));
    if (blockKey.empty()) return engine_code::NotInitialised;
    BlockCipher cipher(blockKey);

    PendingOutput output(job.fileSystem, job.random, job.outputPath, job.observer);
    std::int32_t code = output.Begin(EncryptedLength(before->lengthBytes));
    if (code == engine_code::Success) {
        code = SealAll(job, *input.file, before->lengthBytes, cipher, output);
    }
    if (code != engine_code::Success) return code;
    if (!IsUnchanged(*input.file, *before)) return engine_code::ReadError;
    return output.Commit(*input.file);
}

} // namespace zr5
