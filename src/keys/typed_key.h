#pragma once

// What the two dialogs for typing a key share: which characters a key may have, what the user
// answered, and how a typed key becomes the current one.

#include "keys/current_key.h"
#include "libs/system/secret.h"

#include <optional>
#include <string_view>

namespace zr5 {

/// How a dialog for typing a key ended.
enum class KeyAnswer {
    Yes,    ///< use the key
    No,     ///< use no key, and drop the current one
    Cancel, ///< leave the current key as it is
};

/// Shown under a key box that refused an edit.
inline constexpr std::string_view KeyCharacterHint = "This character cannot be part of a key.";

/// What the user typed (UTF-16, composed) as bytes of code page 1252; nullopt when it holds a
/// character that the code page lacks.
[[nodiscard]] std::optional<SecretBytes> TypedKeyBytes(std::u16string_view typed);

enum class TypedWith { Display, NoDisplay };

/// Makes `entry`, which is long enough, the current key in place of any other. `inspected` keeps
/// the typed text for the inspection. Only a key typed with display is kept to fill its box again.
void StoreTypedKey(CurrentKey& key, const SecretBytes& entry, TypedWith with, bool inspected);

} // namespace zr5
