#include "setup/verb_form.h"

#include <array>
#include <utility>

namespace zr5 {
namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 8> Forms{{
    {"Encrypt", "Decrypt"},
    {"encrypt", "decrypt"},
    {"Encryption", "Decryption"},
    {"encryption", "decryption"},
    {"Encrypted", "Decrypted"},
    {"encrypted", "decrypted"},
    {"Encrypting", "Decrypting"},
    {"encrypting", "decrypting"},
}};

} // namespace

std::string VerbForm(Function operation, std::string_view word) {
    if (operation == Function::Decrypt) {
        for (const auto& [encrypt, decrypt] : Forms) {
            if (word == encrypt) return std::string(decrypt);
        }
    }
    return std::string(word);
}

std::string PerformCaption(Function operation) {
    return "Perform the " + VerbForm(operation, "encryption");
}

} // namespace zr5
