#pragma once

// From the user's key to the keys of one file: the slow derivation, remembered for as long as the
// key stays the same, and the header through which a file names its salts and knows its key.

#include "libs/cipher/cipher_engine.h"
#include "libs/cipher/zr5_crypto.h"

#include <span>
#include <string_view>
#include <vector>

namespace zr5 {

using RunSalt = std::array<std::byte, RunSaltBytes>;

/// One slow key derivation serves every file of a run: masters are remembered in locked memory.
class MasterKeys {
  public:
    explicit MasterKeys(Argon2Cost cost) : cost_(cost) {}
    /// As SetKey with nothing, and the memory of the key is given back.
    void Clear();
    /// Takes over a key; another one than before wipes every master. Empty: forget everything.
    void SetKey(std::string_view key);
    [[nodiscard]] bool HasKey() const { return !key_.empty(); }
    /// Changes with every new key, so that whoever keeps something by key can tell.
    [[nodiscard]] unsigned Generation() const { return generation_; }

    /// The master for `salt`, derived at its first use. Null when memory is missing. Valid until
    /// the next call.
    [[nodiscard]] const SecretBytes* For(const RunSalt& salt);

  private:
    struct Entry {
        RunSalt salt;
        SecretBytes master;
    };
    /// Files of more runs than this in turn cost a derivation each.
    static constexpr std::size_t MostEntries = 16;

    Argon2Cost cost_;
    SecretBytes key_;
    unsigned generation_ = 0;
    std::vector<Entry> entries_; ///< the latest used last
};

/// Writes the header of a new file, with a file salt of its own, and gives the block key; empty
/// when the library failed.
[[nodiscard]] SecretBytes MakeHeader(const SecretBytes& master, const RunSalt& runSalt,
                                     RandomSource& random,
                                     std::span<std::byte, HeaderBytes> header);

struct OpenedHeader {
    /// Success; WrongKeyOrCorrupt for a foreign file, a damaged header or a wrong key;
    /// NotInitialised when memory is missing or the library failed.
    EngineResult result = EngineResult::WrongKeyOrCorrupt;
    SecretBytes blockKey; ///< set exactly on Success
};

/// Checks the header of a file against the key.
[[nodiscard]] OpenedHeader OpenHeader(std::span<const std::byte, HeaderBytes> header,
                                      MasterKeys& masters);

} // namespace zr5
