#pragma once

// Taking the key from a keyfile, or creating a new random keyfile: every question on the way, and
// what becomes of the current key.

#include "keys/current_key.h"
#include "keys/key_windows.h"
#include "setup/operation_setup.h"
#include "util/machine.h"

#include <string>
#include <string_view>

namespace zr5 {

enum class KeyfileMode {
    Existing, ///< `cmdKeyFile(0)`, "Get key from keyfile"
    Create,   ///< `cmdKeyFile(1)`, "Create random keyfile"
};

/// Lets the user choose a keyfile and makes its first 64 bytes the current key. A name that does
/// not exist can be created as a new keyfile in either mode. A choice that the user gives up, or
/// a place where no keyfile can be made, sets `keyChoiceAbandoned` and changes nothing else. An
/// unsuitable keyfile, one that could not be saved, and a key that the user rejects in the
/// inspection leave no key.
void GetKeyFromKeyfile(KeyfileMode mode, Direction operation, Machine& machine,
                       const KeyWindows& windows, CurrentKey& key);

/// Whether the file at `path` is the keyfile of `key`, or would give the same key as a keyfile: a
/// copy of it, under whatever name.
[[nodiscard]] bool IsKeyfileOf(const CurrentKey& key, FileSystem& fileSystem,
                               const std::string& path);

/// A keyfile's path as it is shown.
[[nodiscard]] std::string ShownKeyfile(std::string_view path);

} // namespace zr5
