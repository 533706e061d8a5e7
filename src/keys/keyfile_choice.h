#pragma once

// Taking the key from a keyfile, or creating a new random keyfile: every question on the way, and
// what becomes of the current key.

#include "keys/current_key.h"
#include "keys/key_collector.h"
#include "keys/key_inspector.h"
#include "libs/filekit/file_kit.h"
#include "libs/system/file_system.h"
#include "libs/system/random.h"
#include "setup/operation_setup.h"
#include "util/user_port.h"

#include <string>
#include <string_view>

namespace zr5 {

/// What a choice of a keyfile works with.
struct KeyfileTools {
    UserPort& user;
    FileSystem& fileSystem;
    const CipherEngine& engine;
    FileKit& fileKit;
    RandomSource& random;
    KeyInspector& inspector;
    KeyCollector& collector;
};

enum class KeyfileMode {
    Existing, ///< `cmdKeyFile(0)`, "Get key from keyfile"
    Create,   ///< `cmdKeyFile(1)`, "Create random keyfile"
};

/// Lets the user choose a keyfile and makes its first 64 bytes the current key. A name that does
/// not exist can be created as a new keyfile in either mode. A choice that the user gives up, or
/// a place where no keyfile can be made, sets `keyChoiceAbandoned` and changes nothing else. An
/// unsuitable keyfile, one that could not be saved, and a key that the user rejects in the
/// inspection leave no key.
void GetKeyFromKeyfile(KeyfileMode mode, Function operation, const KeyfileTools& tools,
                       CurrentKey& key);

/// A keyfile's path as it is shown.
[[nodiscard]] std::string ShownKeyfile(std::string_view path);

} // namespace zr5
