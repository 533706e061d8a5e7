#pragma once

// From the user's key to the keys of one file: the slow derivation, remembered for as long as the
// key stays the same, and the header through which a file names its salts and knows its key.

#include "libs/cipher/cipher_engine.h"
#include "libs/cipher/zr5_crypto.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace zr5 {

using RunSalt = std::array<std::byte, RunSaltBytes>;
using FileSalt = Tag256;
using HeaderImage = std::array<std::byte, HeaderBytes>; ///< as it stands in the file
using MasterKey = std::span<const std::byte, KeyBytes>;

/// One slow key derivation serves every file of a run: masters are remembered in locked memory.
class MasterKeys {
  public:
    explicit MasterKeys(Argon2Cost cost) : cost_(cost) {}
    /// As SetKey with nothing, and the memory of the keys is given back.
    void Clear();
    /// Takes over a key; another one than before wipes every master. Empty: forget everything.
    void SetKey(std::string_view key);
    [[nodiscard]] bool HasKey() const { return !key_.empty(); }
    /// Changes with every new key, so that whoever keeps something by key can tell.
    [[nodiscard]] unsigned Generation() const { return generation_; }

    /// The master for `salt`, derived at its first use. Empty when memory is missing. Valid until
    /// the next call.
    [[nodiscard]] std::optional<MasterKey> For(const RunSalt& salt);

  private:
    struct Entry {
        RunSalt salt;
        std::size_t place; ///< of its master among `masters_`, counted in keys
    };
    /// Files of more runs than this in turn cost a derivation each.
    static constexpr std::size_t MostEntries = 256;

    [[nodiscard]] std::span<std::byte, KeyBytes> MasterAt(std::size_t place) {
        return masters_.bytes().subspan(place * KeyBytes).first<KeyBytes>();
    }

    Argon2Cost cost_;
    SecretBytes key_;
    unsigned generation_ = 0;
    SecretBytes masters_;
    std::vector<Entry> entries_; ///< the latest used last
};

/// Makes file salts that repeat for no two contents, also where the random source repeats itself
/// because the machine was copied while it slept: what the file is goes into its salt.
class FileSalts {
  public:
    FileSalts(RandomSource& random, const Clock& clock) : random_(random), clock_(clock) {}
    /// For a plaintext file that begins with `firstPiece`. Empty when the library failed.
    [[nodiscard]] std::optional<FileSalt> Next(MasterKey master, const FileInfo& input,
                                               std::span<const std::byte> firstPiece);

  private:
    RandomSource& random_;
    const Clock& clock_;
    std::uint64_t made_ = 0;
};

/// A header, and what it stands for.
struct FileHeader {
    HeaderImage image{};
    std::uint64_t plainBytes = 0;
    SecretBytes blockKey = {};
};

/// The header of a new file with so many bytes of plaintext. Empty when the library failed.
[[nodiscard]] std::optional<FileHeader> MakeHeader(MasterKey master, const RunSalt& runSalt,
                                                   const FileSalt& fileSalt,
                                                   std::uint64_t plainBytes);

struct OpenedHeader {
    /// Success; WrongKeyOrCorrupt for what is no header, is damaged, or needs another key;
    /// NotInitialised when memory is missing; LibraryFailed.
    EngineResult result = EngineResult::WrongKeyOrCorrupt;
    FileHeader header; ///< set exactly on Success
};

/// Checks a header against the key.
[[nodiscard]] OpenedHeader OpenHeader(const HeaderImage& image, MasterKeys& masters);

/// Whether `image` begins like a header of this version.
[[nodiscard]] bool LooksLikeHeader(std::span<const std::byte> image);
/// The same of a version that this program does not know yet.
[[nodiscard]] bool LooksLikeNewerHeader(std::span<const std::byte> image);

} // namespace zr5
