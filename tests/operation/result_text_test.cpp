#include "operation/result_text.h"

#include <gtest/gtest.h>

namespace zr5 {
namespace {

TEST(EngineResult, IsReportedInItsOwnWords) {
    const std::string indent = "\r\n              ";
    const std::string partial = indent + "Partial plaintext may be in /o/out.txt.";
    const std::string size =
        "Invalid block size." + indent + "Decryption key is incorrect or ciphertext is corrupt.";
    const std::string blocks = indent + "Ciphertext is corrupt or decryption key is incorrect.";
    const std::pair<std::int16_t, std::string> cases[] = {
        {-3, "Input file not found."},
        {-4, "Unable to open input file."},
        {-5, "Unable to open output file."},
        {-6, "Read error."},
        {-7, "Write error."},
        {-8, size},
        {-9, "Write error: disk full."},
        {-16, "Read error." + partial},
        {-17, "Write error." + partial},
        {-18, size + partial},
        {-21, "One block expansion error occurred." + blocks + partial},
        {-22, "2 block expansion errors occurred." + blocks + partial},
        {-29, "9 block expansion errors occurred." + blocks + partial},
    };
    for (const auto& [code, text] : cases)
        EXPECT_EQ(EngineResultText(code, "/o/out.txt"), text);
    for (const int code : {-1, -2, -10, -15, -19, -20, -30, -99, -100, 9}) {
        EXPECT_EQ(EngineResultText(static_cast<std::int16_t>(code), "/o/out.txt"),
                  "Unknown error #" + std::to_string(code) + "." +
                      (code < -15 && code > -100 ? partial : ""));
    }
}

} // namespace
} // namespace zr5
