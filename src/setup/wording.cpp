#include "setup/wording.h"

#include "util/display.h"

#include <array>

namespace zr5 {
namespace {

/// In the order of Purpose.
constexpr std::array<std::string_view, 3> Forms[] = {
    {"Encrypt", "Decrypt", "Check"},          {"encrypt", "decrypt", "check"},
    {"Encryption", "Decryption", "Check"},    {"encryption", "decryption", "check"},
    {"Encrypted", "Decrypted", "Checked"},    {"encrypted", "decrypted", "checked"},
    {"Encrypting", "Decrypting", "Checking"}, {"encrypting", "decrypting", "checking"},
};

} // namespace

Purpose PurposeOf(Direction operation) {
    return operation == Direction::Encrypt ? Purpose::Encrypt : Purpose::Decrypt;
}

Purpose PurposeOf(const OperationSetup& setup) {
    return setup.IsCheck() ? Purpose::Check : PurposeOf(setup.Operation);
}

std::string VerbForm(Purpose purpose, std::string_view word) {
    for (const auto& forms : Forms) {
        if (word == forms.front()) return std::string(forms.at(static_cast<std::size_t>(purpose)));
    }
    return std::string(word);
}

std::string VerbForm(Direction operation, std::string_view word) {
    return VerbForm(PurposeOf(operation), word);
}

std::string PerformCaption(Purpose purpose) {
    return purpose == Purpose::Check ? "Check the encrypted files"
                                     : "Perform the " + VerbForm(purpose, "encryption");
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
