#include "keys/key_frame.h"
#include "keys/key_inspection.h"

#include "support/fakes.h"
#include "support/scripted_user.h"

#include <gtest/gtest.h>

namespace zr5::test {
namespace {

const KeyLabels Saved{"before", "(before)"};
const KeyLabels Shown{"now", "(now)"};

CurrentKey KeyInState(KeyState state) {
    CurrentKey key;
    key.keyState = state;
    key.keyText = SecretBytes::CopyOf("ABCDEFGHIJKLMNOP");
    return key;
}

TEST(KeyLabels, TellWhereTheKeyCameFrom) {
    const struct {
        KeyState state;
        bool isNew, isRandom, isText;
        std::string second;
    } cases[] = {{KeyState::NoKey, true, true, true, ""},
                 {KeyState::Keyboard, true, true, true, "(keyboard entry)"},
                 {KeyState::Keyfile, true, true, false, "(new random key in keyfile)"},
                 {KeyState::Keyfile, false, true, true, "(apparently random key in keyfile)"},
                 {KeyState::Keyfile, false, false, true, "(text key in keyfile)"},
                 {KeyState::Keyfile, false, false, false, "(non-random non-text key in keyfile)"}};
    for (const auto& c : cases) {
        CurrentKey key = KeyInState(c.state);
        key.isNewRandomKey = c.isNew;
        key.isApparentlyRandom = c.isRandom;
        key.isTextKey = c.isText;
        ScriptedUser user;
        FakeEngine engine;
        const KeyLabels expected{c.state == KeyState::NoKey ? "Key not specified" : "Key specified",
                                 c.second};
        EXPECT_EQ(UpdateKeyLabels(key, Saved, user, engine), expected) << c.second;
    }
}

TEST(KeyLabels, ComeBackAfterAnAbandonedChoice) {
    CurrentKey key;
    KeyFrame frame;
    ScriptedUser user;
    FakeEngine engine;
    frame.Open(key, Saved);
    frame.Open(key, Shown);
    EXPECT_EQ(frame.SavedLabels(), Saved) << "saved once";
    key.keyChoiceAbandoned = true;
    EXPECT_EQ(UpdateKeyLabels(key, Saved, user, engine), Saved);
    using enum KeyFrame::FocusAfter;
    EXPECT_EQ(frame.Close(key), KeyFrom);
    EXPECT_FALSE(frame.IsOpen());
    frame.Open(key, Shown);
    EXPECT_EQ(frame.SavedLabels(), Shown);
    EXPECT_EQ(frame.Close(KeyInState(KeyState::Keyfile)), KeyFrom);
    EXPECT_EQ(frame.Close(KeyInState(KeyState::Keyboard)), DoIt);
}

TEST(ErasingTheKey, LeavesNothingHereOrInTheEngine) {
    CurrentKey key = KeyInState(KeyState::Keyfile);
    key.keyBuffer = SecretBytes::CopyOf("buffer");
    key.rawKeyEntry = SecretBytes::CopyOf("raw");
    key.keyfilePath = "/home/a/key";
    key.keyChoiceAbandoned = true;
    FakeEngine engine;
    engine.lastKey = "ABCDEFGHIJKLMNOP";
    ScriptedUser user;
    user.Expect(Notice("Done", "Erase key"));
    EraseKeyAndTell(key, engine, user);
    EXPECT_TRUE(key.keyText.empty() && key.keyBuffer.empty() && key.rawKeyEntry.empty());
    EXPECT_TRUE(key.keyfilePath.empty());
    EXPECT_EQ(engine.lastKey, "");
    EXPECT_EQ(UpdateKeyLabels(key, Saved, user, engine), NoKeyLabels());
    key.keyState = KeyState::Keyfile; // but without a key
    user.Expect(Notice("Error processing key!", "Error", BoxIcon::Critical));
    EXPECT_EQ(UpdateKeyLabels(key, Saved, user, engine), KeyLabels{});
    EXPECT_FALSE(key.IsHeld());
}

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
    FakeKit kit;
    ScriptedUser user;
};

TEST_F(Inspection, ShowsATypedKeyAsTextFirstAndInRowsOfSixteen) {
    KeyInspection key = Of("abcd efgh ijkl mnop", false, true);
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
    EXPECT_EQ(random.View(), KeyView::Decimal);
    EXPECT_EQ(random.RandomnessLine(), "Randomness is 0.940.");
    user.Expect(Notice("Be sure to remember the name of the keyfile!", "Key selected"));
    random.Accept(user);
    KeyInspection binary = Of(std::string(17, '\x7F') + std::string(47, '\0'), false, false);
    EXPECT_FALSE(binary.OffersAscii());
    EXPECT_EQ(Row(binary, KeyView::Decimal, 1).substr(0, 8), "127   0 ");
}

} // namespace
} // namespace zr5::test
