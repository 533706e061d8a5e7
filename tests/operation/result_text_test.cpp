#include "operation/result_text.h"

#include <gtest/gtest.h>

namespace zr5 {
namespace {

struct ResultCase {
    std::int16_t code;
    const char* text;
};
class EngineResult : public testing::TestWithParam<ResultCase> {};

TEST_P(EngineResult, IsReportedInItsOwnWords) {
    EXPECT_EQ(EngineResultText(GetParam().code, "/o/out.txt"), GetParam().text);
}

#define INDENT "\r\n              "
#define PARTIAL INDENT "Partial plaintext may be in /o/out.txt."

INSTANTIATE_TEST_SUITE_P(
    Codes, EngineResult,
    testing::Values(
        ResultCase{-1, "Unknown error #-1."}, ResultCase{-2, "Unknown error #-2."},
        ResultCase{-3, "Input file not found."}, ResultCase{-4, "Unable to open input file."},
        ResultCase{-5, "Unable to open output file."}, ResultCase{-6, "Read error."},
        ResultCase{-7, "Write error."},
        ResultCase{-8, "Invalid block size." INDENT
                       "Decryption key is incorrect or ciphertext is corrupt."},
        ResultCase{-9, "Write error: disk full."}, ResultCase{-10, "Unknown error #-10."},
        ResultCase{-15, "Unknown error #-15."}, ResultCase{-16, "Read error." PARTIAL},
        ResultCase{-17, "Write error." PARTIAL},
        ResultCase{-18, "Invalid block size." INDENT
                        "Decryption key is incorrect or ciphertext is corrupt." PARTIAL},
        ResultCase{-19, "Unknown error #-19." PARTIAL},
        ResultCase{-20, "Unknown error #-20." PARTIAL},
        ResultCase{-21, "One block expansion error occurred." INDENT
                        "Ciphertext is corrupt or decryption key is incorrect." PARTIAL},
        ResultCase{-22, "2 block expansion errors occurred." INDENT
                        "Ciphertext is corrupt or decryption key is incorrect." PARTIAL},
        ResultCase{-29, "9 block expansion errors occurred." INDENT
                        "Ciphertext is corrupt or decryption key is incorrect." PARTIAL},
        ResultCase{-30, "Unknown error #-30." PARTIAL},
        ResultCase{-99, "Unknown error #-99." PARTIAL}, ResultCase{-100, "Unknown error #-100."},
        ResultCase{9, "Unknown error #9."}));

} // namespace
} // namespace zr5
