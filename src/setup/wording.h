#pragma once

// The words for what an operation is about: every word that depends on its purpose is written in
// its encrypt form and passes here.

#include "setup/operation_setup.h"

#include <string>
#include <string_view>

namespace zr5 {

/// What becomes of the files of an operation, in words.
enum class Purpose { Encrypt, Decrypt, Check };

[[nodiscard]] Purpose PurposeOf(Direction operation);
[[nodiscard]] Purpose PurposeOf(const OperationSetup& setup);

/// `word` when encrypting; else the counterpart of the eight forms of "encrypt" ("Encryption"
/// becomes "Decryption" or "Check"); any other word unchanged.
[[nodiscard]] std::string VerbForm(Purpose purpose, std::string_view word);
[[nodiscard]] std::string VerbForm(Direction operation, std::string_view word);

/// The caption of the button that starts such an operation, which is also the title of what is
/// said before it.
[[nodiscard]] std::string PerformCaption(Purpose purpose);

/// "Input file" or "Output file" by side, with an "s" when the input is a folder.
[[nodiscard]] std::string InputOutputFileWord(std::size_t side, InputSource source);

/// What is processed: the file's path, "all files in the folder …" or the pattern and the folder.
[[nodiscard]] std::string InputDescription(const OperationSetup& setup);

} // namespace zr5
