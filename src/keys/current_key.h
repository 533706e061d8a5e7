#pragma once

// The one key of the running program: its bytes in locked memory, what is known of them, and the
// one place where it changes.

#include "libs/cipher/cipher_engine.h"
#include "libs/system/secret.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace zr5 {

enum class KeyState : std::int16_t { NoKey = -1, Keyboard = 0, Keyfile = 2 };

/// Where a key came from.
enum class KeySource {
    None,
    KeyboardEntry,
    NewRandomKeyfile,
    ApparentlyRandomKeyfile,
    TextKeyfile,
    NonRandomNonTextKeyfile,
};

/// The main window's words for it: "(text key in keyfile)", …; empty for no key.
[[nodiscard]] std::string_view SourceLine(KeySource source);
/// The inspection's words for it: "Text key from file", …; empty for no key.
[[nodiscard]] std::string_view ClassLine(KeySource source);

/// Key characters are bytes of code page 1252. Key dialogs work on a candidate of their own and
/// hand it over only when the choice succeeds.
struct CurrentKey {
    SecretBytes keyText;       ///< canonical key, as handed to the cipher engine
    SecretBytes keyBuffer;     ///< up to 64 bytes of a keyfile, or the typed text to be inspected
    SecretBytes rawKeyEntry;   ///< last text typed with display, to fill that box again
    std::string keyfilePath;   ///< as chosen; empty for a typed key
    std::int16_t checksum = 0; ///< 1001 to 9999 once there is a key
    KeyState keyState = KeyState::NoKey;
    bool isNewRandomKey = false;
    bool isApparentlyRandom = false;
    bool isTextKey = false;
    bool keyChoiceAbandoned = false;

    [[nodiscard]] bool IsHeld() const { return keyState != KeyState::NoKey; }
    [[nodiscard]] KeySource Source() const;
};

/// Makes `next` the current key. Every piece of the old one is wiped here, and the engine forgets
/// its copy of it, with all that was derived.
void ReplaceKey(CurrentKey& key, CurrentKey next, CipherEngine& engine);

/// Leaves the state "no key". The dialogs' own boxes are wiped by their windows.
void EraseKey(CurrentKey& key, CipherEngine& engine);

} // namespace zr5
