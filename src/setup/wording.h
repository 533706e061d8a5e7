#pragma once

// The words for what an operation is about: every word that depends on the direction is written
// in its encrypt form and passes here.

#include "setup/operation_setup.h"

#include <string>
#include <string_view>

namespace zr5 {

/// `word` when encrypting; when decrypting, the counterpart of the eight forms of "encrypt"
/// ("Encryption" becomes "Decryption"); any other word unchanged.
[[nodiscard]] std::string VerbForm(Direction operation, std::string_view word);

/// The caption of `cmdDoIt`, which is also the title of what is said before an operation.
[[nodiscard]] std::string PerformCaption(Direction operation);

/// "Input file" or "Output file" by side, with an "s" when the input is a folder.
[[nodiscard]] std::string InputOutputFileWord(std::size_t side, InputSource source);

/// What is processed: the file's path, "all files in the folder …" or the pattern and the folder.
[[nodiscard]] std::string InputDescription(const OperationSetup& setup);

} // namespace zr5
