#include "operation/result_text.h"

namespace zr5 {
namespace {

constexpr std::int16_t FirstBlockErrors = -29;
constexpr std::int16_t LastBlockErrors = -21;

std::string ContinuationLine(const std::string& text) {
    return std::string("\r\n") + ContinuationIndent + text;
}

std::string BlockErrorsText(int count) {
    const std::string counted = count == 1
                                    ? "One block expansion error occurred."
                                    : std::to_string(count) + " block expansion errors occurred.";
    return counted + ContinuationLine("Ciphertext is corrupt or decryption key is incorrect.");
}

std::string TextOf(std::int16_t code) {
    switch (code) {
    case -3:
        return "Input file not found.";
    case -4:
        return "Unable to open input file.";
    case -5:
        return "Unable to open output file.";
    case -6:
    case -16:
        return "Read error.";
    case -7:
    case -17:
        return "Write error.";
    case -8:
    case -18:
        return "Invalid block size." +
               ContinuationLine("Decryption key is incorrect or ciphertext is corrupt.");
    case -9:
        return "Write error: disk full.";
    default:
        if (code >= FirstBlockErrors && code <= LastBlockErrors) return BlockErrorsText(-code - 20);
        return "Unknown error #" + std::to_string(code) + ".";
    }
}

} // namespace

std::string EngineResultText(std::int16_t code, const std::string& outputName) {
    std::string text = TextOf(code);
    if (code >= -99 && code <= -16) {
        text += ContinuationLine("Partial plaintext may be in " + outputName + ".");
    }
    return text;
}

} // namespace zr5
