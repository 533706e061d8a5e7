#include "setup/wording.h"

#include "util/display.h"

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

std::string VerbForm(Direction operation, std::string_view word) {
    if (operation == Direction::Decrypt) {
        for (const auto& [encrypt, decrypt] : Forms) {
            if (word == encrypt) return std::string(decrypt);
        }
    }
    return std::string(word);
}

std::string PerformCaption(Direction operation) {
    return "Perform the " + VerbForm(operation, "encryption");
}

std::string InputOutputFileWord(std::size_t side, InputSource source) {
    const std::string word = side == InputSide ? "Input file" : "Output file";
    return source == InputSource::FilesInAFolder ? word + "s" : word;
}

std::string InputDescription(const OperationSetup& setup) {
    if (setup.InputMode == InputSource::SingleFile) return DisplayName(setup.FilePath(InputSide));
    const std::string pattern = setup.EffectivePattern();
    const std::string which = pattern == AllFilesPattern ? "all files" : DisplayName(pattern);
    return which + " in the folder " + DisplayName(setup.Folder[InputSide]);
}

} // namespace zr5
