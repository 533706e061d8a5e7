#pragma once

// How the files of tests/data were made, so that they can be made again to the byte.

#include "libs/system/secret.h"

#include <map>
#include <string>
#include <string_view>

namespace zr5::test {

/// So many bytes of "1\n2\n3\n…", as `seq 1 40000 | head -c BYTES` prints them.
[[nodiscard]] std::string CountedLines(std::size_t bytes);

/// The MD5 digest of `bytes` in hexadecimal digits.
[[nodiscard]] std::string Md5Text(std::string_view bytes);

/// The canonical key that the table calls so: "typed", "keyfile" or "other".
[[nodiscard]] SecretBytes KnownKey(std::string_view name);

/// Every file of tests/data by its name, but for the table and the README: made by the engine
/// from CountedLines with fixed salts, or out of such files.
[[nodiscard]] std::map<std::string, std::string> MakeKnownFiles();

} // namespace zr5::test
