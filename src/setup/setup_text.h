#pragma once

// A setup as the text of a setup file: 19 lines, described in docs/setup-files.md. Pure functions;
// the key has no place in the text.

#include "setup/operation_setup.h"

#include <optional>
#include <string>
#include <string_view>

namespace zr5 {

/// The text of a setup file, UTF-8 with CR LF line ends; nothing when one of the strings holds
/// what the format cannot: a quote, CR or LF, or a folder that is no UTF-8 and does not begin with
/// "/".
[[nodiscard]] std::optional<std::string> WriteSetupText(const OperationSetup& setup);

struct SetupReading {
    /// What could be read, and what a reset gives for the rest. The captions are those of the
    /// file once all of it could be read, else empty; that of the pattern is written anew.
    OperationSetup setup;
    /// All 19 fields could be read, and they are no folder operation with separate output.
    bool complete = false;
};

/// Reads the content of a setup file: UTF-8, with or without a byte order mark, or else code page
/// 1252. What follows the 19 fields is not read. A pattern or a maximum number of files that no
/// setup may have is replaced by an empty pattern and by 100.
[[nodiscard]] SetupReading ReadSetupText(std::string_view content);

} // namespace zr5
