#include "keys/key_inspection.h"

#include "support/fakes.h"
#include "support/scripted_user.h"

#include <gtest/gtest.h>

namespace zr5 {
namespace {

class Inspection : public testing::Test {
  protected:
    KeyInspection Of(std::string_view bytes, bool random, bool text, bool isNew = false) {
        buffer = SecretBytes::CopyOf(bytes);
        inspected = std::make_unique<InspectedKey>(
            InspectedKey{buffer, "class", "file", random, text, isNew});
        return {*inspected, kit};
    }
    static std::string Row(KeyInspection& inspection, KeyView view, std::size_t row) {
        inspection.Select(view);
        return std::string(inspection.Row(row).text());
    }
    SecretBytes buffer;
    std::unique_ptr<InspectedKey> inspected;
    test::FakeKit kit;
    test::ScriptedUser user;
};

TEST_F(Inspection, ShowsATypedKeyAsTextFirstAndInRowsOfSixteen) {
    KeyInspection key = Of("abcd efgh ijkl mnop", false, true);
    EXPECT_TRUE(key.OffersAscii());
    EXPECT_EQ(key.View(), KeyView::Ascii);
    EXPECT_EQ(key.RandomnessLine(), "");
    EXPECT_EQ(key.ChecksumLine(), "Checksum is 6304.");
    EXPECT_EQ(key.LayoutNote(), "");
    EXPECT_EQ(Row(key, KeyView::Ascii, 0), "abcd efgh ijkl m");
    EXPECT_EQ(Row(key, KeyView::Ascii, 1), "nop");
    EXPECT_EQ(Row(key, KeyView::Ascii, 2), "");
    EXPECT_EQ(Row(key, KeyView::Decimal, 1), "110 111 112 ");
    EXPECT_EQ(Row(key, KeyView::Hexadecimal, 1), " 6E 6F 70");
    key.Accept(user); // no keyfile to remember
}

TEST_F(Inspection, KeepsRowsRowsWhateverTheTextHolds) {
    KeyInspection key = Of(std::string("a\tb\r\nc\f\x80\xE9\0\0", 11), false, true);
    EXPECT_EQ(Row(key, KeyView::Ascii, 0), "a\u2192b\u2190\u2193c\u25A1\u20AC\u00E9  ");
    EXPECT_EQ(key.LayoutNote(),
              "\u2192 tab,  \u2193 line feed,  \u25A1 form feed,  \u2190 carriage return");
    EXPECT_EQ(Row(key, KeyView::Decimal, 0), " 97   9  98  13  10  99  12 128 233         ");
    EXPECT_EQ(Row(key, KeyView::Hexadecimal, 0), " 61 09 62 0D 0A 63 0C 80 E9 00 00");
}

TEST_F(Inspection, ShowsOtherKeysAsNumbersOnly) {
    kit.bufferRandomness = 0.9396;
    KeyInspection random = Of(std::string(64, '\xFF'), true, false, true);
    EXPECT_FALSE(random.OffersAscii());
    EXPECT_EQ(random.View(), KeyView::Decimal);
    EXPECT_EQ(random.RandomnessLine(), "Randomness is 0.940.");
    user.Expect(Notice("Be sure to remember the name of the keyfile!", "Key selected"));
    random.Accept(user);
    KeyInspection binary = Of(std::string(17, '\x7F') + std::string(47, '\0'), false, false);
    EXPECT_FALSE(binary.OffersAscii());
    EXPECT_EQ(binary.RandomnessLine(), "");
    EXPECT_EQ(Row(binary, KeyView::Decimal, 1).substr(0, 8), "127   0 ");
}

} // namespace
} // namespace zr5
