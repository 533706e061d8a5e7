#pragma once

// What may be typed as a file name's extension.

#include "util/user_port.h"

#include <string>
#include <string_view>

namespace zr5 {

/// A typed extension without blanks at its ends and without the "*." or the "." before it.
[[nodiscard]] std::string TidyExtension(std::string_view typed);

/// Whether a tidy extension can be used. If not, a box has said why.
[[nodiscard]] bool AcceptsExtension(UserPort& user, std::string_view extension);

/// The extensions that are given as examples.
enum class ExampleOf { Plaintext, Encrypted };
[[nodiscard]] std::string ExtensionExample(ExampleOf files);

} // namespace zr5
