#include "libs/cipher/pending_output.h"
#include "libs/cipher/zr5_jobs.h"

#include <algorithm>

namespace zr5 {
namespace {

/// What was wrong with the blocks of a file.
struct Damage {
    std::uint64_t blocks = 0; ///< how many could not be opened
    bool endIsWrong = false;  ///< the file was provably cut off or added to
    bool lastIsDamaged = false;
    std::int32_t stoppedBy = engine_code::Success; ///< what ended the work early

    /// Where the only thing wrong is the file's last block, its end is what is wrong: a file
    /// cut off or lengthened inside a block looks just so.
    [[nodiscard]] std::int32_t Code() const {
        if (endIsWrong || (lastIsDamaged && blocks == 1)) return engine_code::CorruptEndPartial;
        if (blocks == 0) return engine_code::Success;
        return engine_code::OneDamagedBlock + 1 -
               static_cast<std::int32_t>(std::min<std::uint64_t>(blocks, 9));
    }
};

class Opener {
  public:
    Opener(JobContext& job, OpenFile& input, const BlockLayout& layout, const SecretBytes& blockKey)
        : job_(job), input_(input), layout_(layout), cipher_(blockKey) {
        damage_.endIsWrong = layout.hasRemainder;
    }

    /// Reads, opens and writes every block.
    Damage Run(PendingOutput& output) {
        const std::uint64_t sealedBytes = layout_.plainBytes + layout_.blocks * TagBytes;
        for (std::uint64_t done = 0; done < sealedBytes;) {
            const auto sealed = job_.sealedBuffer.first(static_cast<std::size_t>(
                std::min<std::uint64_t>(SealedPieceBytes, sealedBytes - done)));
            const ReadResult got = input_.Read(sealed);
            if (got.status != FsStatus::Ok || got.count != sealed.size()) {
                KeepWholeBlocks(sealed.first(got.count), output);
                break;
            }
            damage_.stoppedBy = output.Write(OpenPiece(sealed));
            if (damage_.stoppedBy != engine_code::Success) break;
            // A long file must not drive what others have out of the system's memory.
            if (sealed.size() != sealedBytes) {
                input_.ForgetCached(HeaderBytes + done, sealed.size());
            }
            done += sealed.size();
            if (job_.progress) job_.progress(HeaderBytes + done, HeaderBytes + sealedBytes);
        }
        return damage_;
    }

  private:
    /// Reading stopped inside a piece: its blocks that came whole are written still.
    void KeepWholeBlocks(std::span<const std::byte> sealed, PendingOutput& output) {
        const std::size_t whole = sealed.size() - sealed.size() % SealedBlockBytes;
        damage_.stoppedBy = output.Write(OpenPiece(sealed.first(whole)));
        if (damage_.stoppedBy == engine_code::Success) damage_.stoppedBy = engine_code::ReadError;
    }

    std::span<const std::byte> OpenPiece(std::span<const std::byte> sealed) {
        std::size_t filled = 0;
        for (std::size_t at = 0; at < sealed.size(); at += SealedBlockBytes) {
            const auto block = sealed.subspan(at, std::min(SealedBlockBytes, sealed.size() - at));
            OpenBlock(block, job_.plainBuffer.subspan(filled, block.size() - TagBytes));
            filled += block.size() - TagBytes;
        }
        return job_.plainBuffer.first(filled);
    }

    /// A block that opens only with the other mark, last or not, is genuine, but the file does
    /// not end where it should. One that does not open leaves zero bytes, so that everything
    /// else keeps its place.
    void OpenBlock(std::span<const std::byte> sealed, std::span<std::byte> plain) {
        const bool isLast = number_ + 1 == layout_.blocks;
        if (!cipher_.Open(number_, isLast, sealed, plain)) {
            if (cipher_.Open(number_, !isLast, sealed, plain)) {
                damage_.endIsWrong = true;
            } else {
                ++damage_.blocks;
                damage_.lastIsDamaged = isLast;
            }
        }
        ++number_;
    }

    JobContext& job_;
    OpenFile& input_;
    BlockLayout layout_;
    BlockCipher cipher_;
    std::uint64_t number_ = 0;
    Damage damage_;
};

/// Reading or writing failed on the way: what was recovered before is kept, if anything was.
std::int32_t KeepPart(std::int32_t stoppedBy, PendingOutput& output, const OpenFile& input) {
    if (stoppedBy == engine_code::DiskFull || output.WrittenBytes() == 0) return stoppedBy;
    if (output.CommitPart(input) != engine_code::Success) return stoppedBy;
    return stoppedBy == engine_code::ReadError ? engine_code::ReadErrorPartial
                                               : engine_code::WriteErrorPartial;
}

} // namespace

FileKeys KeysOfHeader(const std::array<std::byte, HeaderBytes>& header, MasterKeys& masters,
                      std::int32_t& code) {
    code = engine_code::WrongKeyOrCorrupt;
    const std::span<const std::byte, HeaderBytes> all(header);
    if (!std::ranges::equal(all.first<Magic.size()>(), Magic)) return {};
    RunSalt runSalt{};
    std::ranges::copy(all.subspan<RunSaltAt, RunSaltBytes>(), runSalt.begin());
    const SecretBytes* master = masters.For(runSalt);
    FileKeys keys;
    Tag256 tag{};
    if (master != nullptr) keys = DeriveFileKeys(*master, all.subspan<FileSaltAt, FileSaltBytes>());
    if (keys.header.empty() || !HmacSha256(keys.header.bytes(), all.first<HeaderTagAt>(), tag)) {
        code = engine_code::NotInitialised;
        return {};
    }
    if (!EqualInConstantTime(tag, all.subspan<HeaderTagAt, HeaderTagBytes>())) return {};
    return keys;
}

std::int32_t RunDecryption(JobContext& job) {
    OpenResult input = job.fileSystem.OpenForReading(job.inputPath);
    if (input.status != FsStatus::Ok) return InputCode(input.status);
    if (SameFile(job.fileSystem, job.inputPath, job.outputPath)) {
        return engine_code::OutputNotOpened;
    }
    const auto info = input.file->Info();
    if (!info) return engine_code::ReadError;
    const BlockLayout layout = LayoutOf(info->lengthBytes);
    if (layout.blocks == 0) return engine_code::WrongKeyOrCorrupt;

    std::array<std::byte, HeaderBytes> header{};
    const ReadResult got = input.file->Read(header);
    if (got.status != FsStatus::Ok || got.count != header.size()) return engine_code::ReadError;
    std::int32_t code = engine_code::Success;
    const FileKeys keys = KeysOfHeader(header, job.masters, code);
    if (keys.block.empty()) return code;

    PendingOutput output(job.fileSystem, job.random, job.outputPath, job.observer);
    code = output.Begin(layout.plainBytes);
    if (code != engine_code::Success) return code;
    const Damage damage = Opener(job, *input.file, layout, keys.block).Run(output);
    if (damage.stoppedBy != engine_code::Success) {
        return KeepPart(damage.stoppedBy, output, *input.file);
    }
    const std::int32_t found = damage.Code();
    code = output.Commit(*input.file, found == engine_code::Success ? Extent::Whole : Extent::Part);
    return code == engine_code::Success ? found : code;
}

} // namespace zr5
