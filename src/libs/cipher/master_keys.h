#pragma once

// One slow key derivation serves every file of a run: masters are remembered in locked memory
// for as long as the key stays the same.

#include "libs/cipher/zr5_crypto.h"

#include <string_view>
#include <vector>

namespace zr5 {

using RunSalt = std::array<std::byte, RunSaltBytes>;

class MasterKeys {
  public:
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

    SecretBytes key_;
    unsigned generation_ = 0;
    std::vector<Entry> entries_; ///< the latest used last
};

} // namespace zr5
