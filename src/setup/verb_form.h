#pragma once

// Every word that depends on the direction is written in its encrypt form and passes here.

#include "setup/operation_setup.h"

#include <string>
#include <string_view>

namespace zr5 {

/// `word` when encrypting; when decrypting, the counterpart of the eight forms of "encrypt"
/// ("Encryption" becomes "Decryption"); any other word unchanged.
[[nodiscard]] std::string VerbForm(Function operation, std::string_view word);

/// The caption of `cmdDoIt`, which is also the title of what is said before an operation.
[[nodiscard]] std::string PerformCaption(Function operation);

} // namespace zr5
