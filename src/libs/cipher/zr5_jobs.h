#pragma once

// One file through the cipher, in either direction. The engine prepares a job and runs it.

#include "libs/cipher/cipher_engine.h"
#include "libs/cipher/master_keys.h"
#include "libs/cipher/zr5_crypto.h"
#include "libs/cipher/zr5_format.h"
#include "libs/system/file_system.h"
#include "libs/system/random.h"

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace zr5 {

/// So many blocks go through the buffers at once: 1 MiB of plaintext.
inline constexpr std::size_t BlocksInPiece = 16;
inline constexpr std::size_t PlainPieceBytes = BlocksInPiece * BlockBytes;
inline constexpr std::size_t SealedPieceBytes = BlocksInPiece * SealedBlockBytes;

struct JobContext {
    FileSystem& fileSystem;
    RandomSource& random;
    MasterKeys& masters;
    std::span<std::byte> plainBuffer;  ///< PlainPieceBytes
    std::span<std::byte> sealedBuffer; ///< HeaderBytes + SealedPieceBytes
    ProgressFunction progress;         ///< called after every piece; may be empty
    OutputObserver* observer;          ///< of the output; may be null
    std::string inputPath;
    std::string outputPath;
};

/// Engine codes. `runSalt` goes into the header of the encrypted file.
[[nodiscard]] std::int32_t RunEncryption(JobContext& job, const RunSalt& runSalt);
[[nodiscard]] std::int32_t RunDecryption(JobContext& job);
/// Whether `outputPath`, read from the disk, decrypts to exactly what is in `inputPath`: an
/// engine code, WriteError where it does not.
[[nodiscard]] std::int32_t RunVerification(JobContext& job);

/// The keys that a header commits to; empty for a foreign file, a damaged header or a wrong key.
/// `code` says NotInitialised when it was none of these.
[[nodiscard]] FileKeys KeysOfHeader(const std::array<std::byte, HeaderBytes>& header,
                                    MasterKeys& masters, std::int32_t& code);

/// The engine code for an input that could not be opened.
[[nodiscard]] std::int32_t InputCode(FsStatus status);

} // namespace zr5
