#include "keys/key_frame.h"
#include "keys/key_inspection.h"
#include "support/fixtures.h"
#include "support/key_windows.h"

namespace zr5::test {
namespace {

using KeyLabelsTest = MachineTest;
using ErasingTheKey = MachineTest;

const KeyLabels Saved{"before", "(before)"};
const KeyLabels Shown{"now", "(now)"};

CurrentKey KeyInState(KeyState state) {
    CurrentKey key;
    key.keyState = state;
    key.keyText = SecretBytes::CopyOf("ABCDEFGHIJKLMNOP");
    return key;
}

TEST_F(KeyLabelsTest, TellWhereTheKeyCameFrom) {
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
        const KeyLabels expected{c.state == KeyState::NoKey ? "Key not specified" : "Key specified",
                                 c.second};
        EXPECT_EQ(UpdateKeyLabels(key, Saved, user, engine), expected) << c.second;
    }
}

TEST_F(KeyLabelsTest, ComeBackAfterAnAbandonedChoice) {
    CurrentKey key;
    KeyFrame frame;
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

TEST_F(ErasingTheKey, LeavesNothingHereOrInTheEngine) {
    CurrentKey key = KeyfileKey();
    key.rawKeyEntry = SecretBytes::CopyOf("raw");
    key.keyChoiceAbandoned = true;
    engine.lastKey = "ABCDEFGHIJKLMNOP";
    user.Expect(Notice("Done", "Erase key"));
    EraseKeyAndTell(key, engine, user);
    ExpectNoKey(key);
    EXPECT_EQ(engine.lastKey, "");
    EXPECT_EQ(UpdateKeyLabels(key, Saved, user, engine), NoKeyLabels());
    key.keyState = KeyState::Keyfile; // but without a key
    user.Expect(Notice("Error processing key!", "Error", BoxIcon::Critical));
    EXPECT_EQ(UpdateKeyLabels(key, Saved, user, engine), KeyLabels{});
    EXPECT_FALSE(key.IsHeld());
}

class Inspection : public MachineTest {
  protected:
    KeyInspection Of(std::string_view bytes, bool isRandom, bool text, bool isNew = false) {
        buffer = SecretBytes::CopyOf(bytes);
        inspected = std::make_unique<InspectedKey>(
            InspectedKey{buffer, "class", "file", isRandom, text, isNew});
        return {*inspected, kit};
    }
    static std::string Row(KeyInspection& inspection, KeyView view, std::size_t row) {
        inspection.Select(view);
        return std::string(inspection.Row(row).text());
    }
    SecretBytes buffer;
    std::unique_ptr<InspectedKey> inspected;
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
    KeyInspection randomKey = Of(std::string(64, '\xFF'), true, false, true);
    EXPECT_EQ(randomKey.View(), KeyView::Decimal);
    EXPECT_EQ(randomKey.RandomnessLine(), "Randomness is 0.940.");
    user.Expect(Notice("Be sure to remember the name of the keyfile!", "Key selected"));
    randomKey.Accept(user);
    KeyInspection binary = Of(std::string(17, '\x7F') + std::string(47, '\0'), false, false);
    EXPECT_FALSE(binary.OffersAscii());
    EXPECT_EQ(Row(binary, KeyView::Decimal, 1).substr(0, 8), "127   0 ");
}

} // namespace
} // namespace zr5::test
