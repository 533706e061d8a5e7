#pragma once

// The six calls through which the program reaches its cipher. Result codes are 0 for success
// and negative for a failure; 1 to 8 belong to the operation driver and never come from here.

#include "libs/system/file_system.h"
#include "libs/system/progress.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace zr5 {

/// What an engine's file calls return. `ResultText` (operation) has the words for each.
namespace engine_code {
inline constexpr std::int32_t Success = 0;
inline constexpr std::int32_t NotInitialised = -1;
inline constexpr std::int32_t InputNotFound = -3;
inline constexpr std::int32_t InputNotOpened = -4;
inline constexpr std::int32_t OutputNotOpened = -5;
inline constexpr std::int32_t ReadError = -6;
inline constexpr std::int32_t WriteError = -7;
inline constexpr std::int32_t WrongKeyOrCorrupt = -8;
inline constexpr std::int32_t DiskFull = -9;
/// The next three as -6, -7, -8, with what could be decrypted left in the output.
inline constexpr std::int32_t ReadErrorPartial = -16;
inline constexpr std::int32_t WriteErrorPartial = -17;
inline constexpr std::int32_t CorruptEndPartial = -18;
/// One damaged block; -22 two, and so on to -29 for nine or more.
inline constexpr std::int32_t OneDamagedBlock = -21;
inline constexpr std::int32_t NineDamagedBlocks = -29;
} // namespace engine_code

inline constexpr std::int32_t EngineDecrypt = 0;
inline constexpr std::int32_t EngineEncrypt = 1;

enum class Extent {
    Whole,
    Part, ///< what could be recovered
};

/// Told how an output is made. False from WillMake or WillName ends the work with WriteError.
class OutputObserver {
  public:
    virtual ~OutputObserver() = default;
    /// Whether a file that has the output's name already may be replaced.
    [[nodiscard]] virtual bool MayReplace() const = 0;
    /// A file is about to be made at `path`.
    [[nodiscard]] virtual bool WillMake(const std::string& path) = 0;
    /// There it is.
    virtual void HasMade() = 0;
    /// It is on the disk and about to take the output's name.
    [[nodiscard]] virtual bool WillName(const FileInfo& info, Extent extent) = 0;
};

class CipherEngine {
  public:
    virtual ~CipherEngine() = default;

    /// Once at start-up, before any other call. Non-zero on success; 0 when memory is missing or
    /// the cipher does not compute its known answers.
    [[nodiscard]] virtual std::int32_t allocate_buffers() = 0;
    /// Once at the end; wipes buffers, keys and everything derived from them.
    virtual void deallocate_buffers() = 0;
    /// Before every single file. `key` is copied into locked memory; an empty key makes the
    /// engine forget the last one. `direction` is EngineEncrypt or EngineDecrypt. A failure
    /// shows as the result of the following call.
    virtual void operation_initialization(std::string_view key, std::int32_t direction,
                                          std::uint64_t inputLengthBytes,
                                          std::int32_t reserved) = 0;
    /// Encrypts a file into another. The output is untouched unless the result is 0; then it is
    /// complete and on the disk. (An output that was replaced is complete also when only its name
    /// could not be brought to the disk: WriteError.)
    [[nodiscard]] virtual std::int32_t encrypt_file(const std::string& inputPath,
                                                    const std::string& outputPath) = 0;
    /// Decrypts a file into another. The output is untouched, or complete and on the disk (0),
    /// or holds what could be recovered (-16 to -29).
    [[nodiscard]] virtual std::int32_t decrypt_file(const std::string& inputPath,
                                                    const std::string& outputPath) = 0;
    /// After a successful `encrypt_file` and before the next initialization: reads the output
    /// back from the disk, decrypts it and compares it with the input. 0 when they agree to the
    /// byte; WriteError when they do not.
    [[nodiscard]] virtual std::int32_t verify_file(const std::string& inputPath,
                                                   const std::string& outputPath) = 0;
    /// Non-zero when the first `length` bytes of `key` are text: every byte up to the last
    /// non-NUL one is a printable character of code page 1252, TAB, LF, FF or CR.
    [[nodiscard]] virtual std::int32_t key_is_text(std::string_view key,
                                                   std::int32_t length) const = 0;

    /// Hands in what is called while a file is worked on; an empty function for nothing.
    virtual void SetProgress(ProgressFunction progress) = 0;
    /// Hands in who is told of every output while it is made; null for nobody.
    virtual void SetOutputObserver(OutputObserver* observer) = 0;
};

} // namespace zr5
