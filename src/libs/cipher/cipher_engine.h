#pragma once

// The calls through which the program reaches its cipher, and what they answer.

#include "libs/cipher/zr5_format.h"
#include "libs/system/clock.h"
#include "libs/system/file_system.h"
#include "libs/system/random.h"
#include "libs/system/safe_file.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zr5 {

enum class Direction { Encrypt, Decrypt };

/// What an engine's file calls return.
enum class EngineResult : std::int16_t {
    Success = 0,
    NotInitialised = -1, ///< no key, or no memory
    Stopped = -2,        ///< by `EngineHooks::stopped`
    InputNotFound = -3,
    InputNotOpened = -4,
    OutputNotOpened = -5,
    ReadError = -6,
    WriteError = -7,
    WrongKeyOrCorrupt = -8,
    DiskFull = -9,
    LibraryFailed = -10,
    /// The next three with what could be decrypted in a salvage, a file of its own.
    ReadErrorPartial = -16,
    WriteErrorPartial = -17,
    CorruptEndPartial = -18,
    /// One damaged block; the numbers between stand for two to eight.
    OneDamagedBlock = -21,   ///< with a salvage, too
    NineDamagedBlocks = -29, ///< or more
};

/// The result of a decryption in which `blocks` blocks (at least 1) could not be opened.
[[nodiscard]] constexpr EngineResult DamagedBlocks(std::uint64_t blocks) noexcept {
    const auto counted = static_cast<int>(std::min<std::uint64_t>(blocks, 9));
    return static_cast<EngineResult>(static_cast<int>(EngineResult::OneDamagedBlock) + 1 - counted);
}

/// How many blocks a result tells of: 0 for every other result, 9 for nine or more.
[[nodiscard]] constexpr int DamagedBlocksIn(EngineResult result) noexcept {
    const bool tells =
        result <= EngineResult::OneDamagedBlock && result >= EngineResult::NineDamagedBlocks;
    return tells ? static_cast<int>(EngineResult::OneDamagedBlock) - static_cast<int>(result) + 1
                 : 0;
}

/// Whether at least one block could be opened although not all is well.
[[nodiscard]] constexpr bool IsPartial(EngineResult result) noexcept {
    return result <= EngineResult::ReadErrorPartial;
}

enum class Side { Front, End };

/// An encrypted file that does not begin or end where it should, or has a damaged header there.
struct WrongEnd {
    Side side;
    std::int64_t surplusBytes; ///< negative: so many are missing; 0: the header is damaged
    friend bool operator==(const WrongEnd&, const WrongEnd&) = default;
};

/// What was found wrong in an encrypted file, beside the result.
struct Damage {
    static constexpr std::size_t MostStretches = 5;

    std::vector<ByteRange> lost = {};    ///< of the plaintext: the first MostStretches
    std::uint64_t lostStretches = 0;     ///< in all
    std::uint64_t missingPlainBytes = 0; ///< at the end of the plaintext; nothing stands for them
    std::optional<WrongEnd> wrongEnd = std::nullopt;
    bool isOfNewerVersion = false; ///< of the format, than this engine knows
};

/// Who is told while an engine works on a file, and asked; all may be left out.
struct EngineHooks {
    ProgressFunction progress = {};
    std::function<bool()> stopped = {}; ///< asked after every piece; true undoes the work
    OutputObserver* observer = nullptr;
    /// What a salvage is named after (see PendingOutput::Salvage); empty: the output.
    std::string salvageBase = {};
    Damage* damage = nullptr; ///< begins as of a whole file
};

class CipherEngine {
  public:
    virtual ~CipherEngine() = default;

    /// Once at start-up, before any other call. False when memory is missing or the cipher does
    /// not compute its known answers.
    [[nodiscard]] virtual bool allocate_buffers() = 0;
    /// Once at the end; wipes buffers, keys and everything derived from them.
    virtual void deallocate_buffers() = 0;
    /// Before every single file. `key` is copied into locked memory; an empty key makes the
    /// engine forget the last one. A failure shows as the result of the following call.
    virtual void operation_initialization(std::string_view key, Direction direction) = 0;
    /// Encrypts a file into another. The output is untouched unless the result is Success; then
    /// it is complete and on the disk. (An output that was replaced is complete also when only
    /// its name could not be brought to the disk: WriteError.)
    [[nodiscard]] virtual EngineResult encrypt_file(const std::string& inputPath,
                                                    const std::string& outputPath,
                                                    const EngineHooks& hooks) = 0;
    /// Decrypts a file into another. The output is complete and on the disk (Success), or
    /// untouched. What could be recovered of a damaged file (IsPartial) goes to a free name, which
    /// `hooks.observer` is told.
    [[nodiscard]] virtual EngineResult decrypt_file(const std::string& inputPath,
                                                    const std::string& outputPath,
                                                    const EngineHooks& hooks) = 0;
    /// Decrypts a file and writes nothing: Success when it is whole, else what `decrypt_file` would
    /// say of it. The content comes from the disk, not from the system's memory. Needs the same
    /// initialization.
    [[nodiscard]] virtual EngineResult check_file(const std::string& inputPath,
                                                  const EngineHooks& hooks) = 0;
    /// After a successful `encrypt_file` and before the next initialization: reads the output
    /// back from the disk, decrypts it and compares it with the input. Success when they agree to
    /// the byte; WriteError when they do not. Makes nothing: `hooks.observer` is not told.
    [[nodiscard]] virtual EngineResult verify_file(const std::string& inputPath,
                                                   const std::string& outputPath,
                                                   const EngineHooks& hooks) = 0;
};

/// The engine for file format 1 (docs/format.md). It keeps references to all three. With another
/// `cost` than the format's, its files are for nobody else.
[[nodiscard]] std::unique_ptr<CipherEngine> MakeCipherEngine(FileSystem& fileSystem, Clock& clock,
                                                             RandomSource& random,
                                                             Argon2Cost cost = FormatCost);

enum class Appearance {
    Encrypted, ///< begins or ends like a file that this engine has encrypted
    NotEncrypted,
    Unknown, ///< is empty, or cannot be read
};
/// What a file looks like. No proof, but other files do not look encrypted in practice.
[[nodiscard]] Appearance AppearanceOf(FileSystem& fileSystem, const std::string& path);

} // namespace zr5
