#pragma once

// The one key of the running program: its bytes in locked memory, and what is known of them.

#include "libs/cipher/cipher_engine.h"
#include "libs/system/secret.h"

#include <cstdint>
#include <string>

namespace zr5 {

/// Where the key came from, as the main window tells it.
enum class KeySource {
    None,
    KeyboardEntry,
    NewRandomKeyfile,
    ApparentlyRandomKeyfile,
    TextKeyfile,
    NonRandomNonTextKeyfile,
};

namespace key_state {
inline constexpr std::int16_t NoKey = -1;
inline constexpr std::int16_t Keyboard = 0;
inline constexpr std::int16_t Keyfile = 2;
} // namespace key_state

/// Key characters are bytes of code page 1252. Key dialogs work on a candidate of their own and
/// write here only when the choice succeeds.
struct CurrentKey {
    SecretBytes keyText;       ///< canonical key, as handed to the cipher engine
    SecretBytes keyBuffer;     ///< up to 64 bytes of a keyfile, or the typed text to be inspected
    SecretBytes rawKeyEntry;   ///< last text typed with display, to fill that box again
    std::string keyfilePath;   ///< as chosen; empty for a typed key
    std::int16_t checksum = 0; ///< 1001 to 9999 once there is a key
    std::int16_t keyState = key_state::NoKey;
    bool isNewRandomKey = false;
    bool isApparentlyRandom = false;
    bool isTextKey = false;
    bool keyChoiceAbandoned = false;

    [[nodiscard]] bool IsHeld() const { return keyState != key_state::NoKey; }
    [[nodiscard]] KeySource Source() const;
};

/// Wipes every piece of key material held here and leaves the state "no key". The engine keeps
/// its own copy until it is given another key.
void DiscardKey(CurrentKey& key);

/// Wipes every piece of key material, also the engine's, and leaves the state "no key".
/// The dialogs' own boxes are wiped by their windows.
void EraseKey(CurrentKey& key, CipherEngine& engine);

} // namespace zr5
