#include "keys/normalise.h"

#include "util/code_page.h"

#include <gtest/gtest.h>

namespace zr5 {
namespace {

using namespace std::string_view_literals;

TEST(NormalisedKey, HasNoBlanksAndNoSmallLetters) {
    for (const auto& [text, canonical] : {std::pair{"abcd efgh ijkl mnop"sv, "ABCDEFGHIJKLMNOP"sv},
                                          {"\t a\r\nb\0c\x1F!\x7F"sv, "ABC!\x7F"sv},
                                          {"\xE9\xDF\xF7\xFF\xA0"sv, "\xC9\xDF\xF7\x9F\xA0"sv},
                                          {" \n "sv, ""sv},
                                          {""sv, ""sv}})
        EXPECT_EQ(NormaliseKey(text).text(), canonical);
}

TEST(Checksum, HasFourDigitsForAnyKey) {
    std::int16_t least = INT16_MAX;
    std::int16_t most = 0;
    for (int i = 0; i < 50'000; ++i) {
        const std::int16_t checksum = KeyChecksum("KEY" + std::to_string(i));
        least = std::min(least, checksum);
        most = std::max(most, checksum);
    }
    EXPECT_GE(least, 1001);
    EXPECT_LT(least, 1011);
    EXPECT_LE(most, 9999);
    EXPECT_GT(most, 9989);
}

} // namespace
} // namespace zr5
