#include "libs/cipher/zr5_jobs.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace zr5 {
namespace {

/// Opens block after block and compares it with what `plain` reads. `job.sealedBuffer` holds the
/// sealed piece first and the plain file's bytes afterwards.
class Comparison {
  public:
    Comparison(JobContext& job, OpenFile& plain, OpenFile& sealed, const BlockLayout& layout,
               const SecretBytes& blockKey)
        : job_(job), plain_(plain), sealed_(sealed), layout_(layout), cipher_(blockKey) {}

    std::int32_t Run() {
        for (std::uint64_t done = 0; done < layout_.plainBytes;) {
            const std::size_t length = static_cast<std::size_t>(
                std::min<std::uint64_t>(PlainPieceBytes, layout_.plainBytes - done));
            if (!OpenPiece(length)) return engine_code::WriteError;
            const auto expected = job_.sealedBuffer.first(length);
            const ReadResult got = plain_.Read(expected);
            if (got.status != FsStatus::Ok) return engine_code::ReadError;
            // Many times as fast as a loop over bytes.
            if (got.count != length ||
                std::memcmp(expected.data(), job_.plainBuffer.data(), length) != 0) {
                return engine_code::WriteError;
            }
            done += length;
            if (job_.progress) job_.progress(done, layout_.plainBytes);
        }
        return engine_code::Success;
    }

  private:
    /// The next `length` plain bytes, from the sealed file into `plainBuffer`.
    bool OpenPiece(std::size_t length) {
        const std::size_t blocks = (length + BlockBytes - 1) / BlockBytes;
        const auto sealed = job_.sealedBuffer.first(length + blocks * TagBytes);
        const ReadResult got = sealed_.Read(sealed);
        if (got.status != FsStatus::Ok || got.count != sealed.size()) return false;
        for (std::size_t at = 0, plainAt = 0; at < sealed.size();
             at += SealedBlockBytes, plainAt += BlockBytes, ++number_) {
            const auto block = sealed.subspan(at, std::min(SealedBlockBytes, sealed.size() - at));
            if (!cipher_.Open(number_, number_ + 1 == layout_.blocks, block,
                              job_.plainBuffer.subspan(plainAt, block.size() - TagBytes))) {
                return false;
            }
        }
        return true;
    }

    JobContext& job_;
    OpenFile& plain_;
    OpenFile& sealed_;
    BlockLayout layout_;
    BlockCipher cipher_;
    std::uint64_t number_ = 0;
};

} // namespace

std::int32_t RunVerification(JobContext& job) {
    const OpenResult plain = job.fileSystem.OpenForReading(job.inputPath);
    if (plain.status != FsStatus::Ok) return InputCode(plain.status);
    const OpenResult sealed = job.fileSystem.OpenForReading(job.outputPath);
    if (sealed.status != FsStatus::Ok) return engine_code::WriteError;
    sealed.file->ForgetCached(0, 0);

    const auto plainInfo = plain.file->Info();
    const auto sealedInfo = sealed.file->Info();
    if (!plainInfo) return engine_code::ReadError;
    if (!sealedInfo || sealedInfo->lengthBytes != EncryptedLength(plainInfo->lengthBytes)) {
        return engine_code::WriteError;
    }
    std::array<std::byte, HeaderBytes> header{};
    const ReadResult got = sealed.file->Read(header);
    if (got.status != FsStatus::Ok || got.count != header.size()) return engine_code::WriteError;
    std::int32_t code = engine_code::Success;
    const FileKeys keys = KeysOfHeader(header, job.masters, code);
    if (keys.block.empty()) {
        return code == engine_code::WrongKeyOrCorrupt ? engine_code::WriteError : code;
    }
    return Comparison(job, *plain.file, *sealed.file, LayoutOf(sealedInfo->lengthBytes), keys.block)
        .Run();
}

} // namespace zr5
