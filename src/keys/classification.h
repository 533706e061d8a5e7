#pragma once

// What can be told of the bytes of a keyfile: whether they are text, look random, or neither.

#include "libs/filekit/file_kit.h"
#include "libs/system/secret.h"

#include <cstddef>
#include <string_view>

namespace zr5 {

/// How many bytes of a keyfile are the key, and how many a new keyfile has.
inline constexpr std::size_t KeyfileBytes = 64;

/// Whether the key is text that a person could have written: every byte up to the last one that is
/// not NUL is a printable character of code page 1252 or TAB, LF, FF or CR.
[[nodiscard]] bool KeyIsText(std::string_view key);

/// `buffer` has KeyfileBytes bytes.
[[nodiscard]] double KeyRandomness(FileKit& fileKit, const SecretBytes& buffer);
/// Whether the randomness is 0.88 or more; 64 random bytes hardly ever have less than 0.9.
[[nodiscard]] bool KeyIsApparentlyRandom(FileKit& fileKit, const SecretBytes& buffer);

/// Replaces every NUL before the last byte that is none: the one at position i (from 1) becomes
/// 128 - i. Those after it stay. So a NUL inside a keyfile is part of the key.
void SubstituteInnerNuls(SecretBytes& buffer);

} // namespace zr5
