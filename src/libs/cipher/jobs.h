#pragma once

// One file through the cipher. The engine prepares a job and runs it.

#include "libs/cipher/cipher_engine.h"
#include "libs/cipher/file_keys.h"
#include "libs/cipher/zr5_format.h"

#include <cstddef>
#include <span>
#include <string>

namespace zr5 {

/// So many blocks go through the buffers at once: 1 MiB of plaintext.
inline constexpr std::size_t BlocksInPiece = 16;
inline constexpr std::size_t PlainPieceBytes = BlocksInPiece * PlainBlockBytes;
inline constexpr std::size_t SealedPieceBytes = BlocksInPiece * SealedBlockBytes;

struct JobContext {
    FileSystem& fileSystem;
    RandomSource& random;
    MasterKeys& masters;
    FileSalts& fileSalts;
    std::span<std::byte> plainBuffer;  ///< PlainPieceBytes
    std::span<std::byte> sealedBuffer; ///< SealedPieceBytes and both headers
    EngineHooks hooks;                 ///< `progress` is called after every piece
    Damage& damage;
    std::string inputPath;
    std::string outputPath;

    [[nodiscard]] bool IsStopped() const { return hooks.stopped && hooks.stopped(); }
    void ShowProgress(std::uint64_t done, std::uint64_t total) const {
        if (hooks.progress) hooks.progress(done, total);
    }
};

/// As `encrypt_file`. `runSalt` goes into the header of the encrypted file.
[[nodiscard]] EngineResult RunEncryption(JobContext& job, const RunSalt& runSalt);
/// As `verify_file`.
[[nodiscard]] EngineResult RunVerification(JobContext& job);
/// As `decrypt_file`.
[[nodiscard]] EngineResult RunDecryption(JobContext& job);
/// As `check_file`; there is no output path.
[[nodiscard]] EngineResult RunCheck(JobContext& job);

/// Of an input that could not be opened.
[[nodiscard]] EngineResult ResultOfInput(FsStatus status);
/// Of an output (see PendingOutput).
[[nodiscard]] EngineResult ResultOfOutput(FsStatus status);

} // namespace zr5
