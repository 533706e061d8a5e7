// The frame in which a key is chosen: typing, looking at it, the labels, and erasing.

#include "keys/key_frame.h"
#include "keys/key_inspection.h"
#include "keys/normalise.h"
#include "keys/typed_key.h"
#include "support/fixtures.h"
#include "support/key_windows.h"

namespace zr5::test {
namespace {

using namespace std::string_view_literals;

constexpr std::u16string_view Typed = u"abcd efgh ijkl mnop";
constexpr std::string_view TypedBytes = "abcd efgh ijkl mnop";
constexpr std::string_view Canonical = "ABCDEFGHIJKLMNOP";

/// What every accepted typed key has, whatever key there was before.
void ExpectTypedKey(const CurrentKey& key) {
    EXPECT_EQ(key.keyText.text(), Canonical);
    EXPECT_EQ(key.checksum, 6304);
    EXPECT_EQ(key.keyState, KeyState::Keyboard);
    EXPECT_TRUE(key.keyfilePath.empty());
    EXPECT_FALSE(key.isNewRandomKey || key.isApparentlyRandom || key.keyChoiceAbandoned);
}

TEST(NormalisedKey, HasNoBlanksAndNoSmallLetters) {
    for (const auto& [text, canonical] : {std::pair{"abcd efgh ijkl mnop"sv, "ABCDEFGHIJKLMNOP"sv},
                                          {"\t a\r\nb\0c\x1F!\x7F"sv, "ABC!\x7F"sv},
                                          {"\xE9\xDF\xF7\xFF\xA0"sv, "\xC9\xDF\xF7\x9F\xA0"sv},
                                          {" \n "sv, ""sv},
                                          {""sv, ""sv}})
        EXPECT_EQ(NormaliseKey(text).text(), canonical);
}

TEST(KeyEntry, IsLongEnoughFromSixteenCharactersOnAndKeepsWhatAnEditMayNotChange) {
    KeyEntry entry;
    EXPECT_TRUE(entry.Edit(u"abcd efgh ijkl mno"));
    EXPECT_FALSE(entry.IsLongEnough());
    EXPECT_TRUE(entry.Edit(Typed));
    for (const auto* refused : {u"abcΩ", u"💾", u"e\u0301"})
        EXPECT_FALSE(entry.Edit(refused));
    EXPECT_TRUE(entry.Hint() == KeyCharacterHint && entry.IsLongEnough());
    EXPECT_EQ(entry.Bytes().text(), TypedBytes);
    EXPECT_EQ(entry.ChecksumLine(), "Checksum is 6304");
    EXPECT_TRUE(entry.Edit(u""));
    EXPECT_FALSE(!entry.Hint().empty() || entry.IsLongEnough());
    EXPECT_TRUE(entry.Edit(u"abcd\u00A0efgh\u2007ijkl\u202Fmnop"));
    EXPECT_EQ(entry.Hint(), NoBreakBlankHint);
    EXPECT_EQ(entry.ChecksumLine(), "Checksum is 6304") << "as with blanks";
    EXPECT_TRUE(entry.Edit(std::u16string(70, u'x'))) << "cut off";
    EXPECT_EQ(entry.Bytes().text(), std::string(64, 'x'));
    EXPECT_FALSE(entry.Edit(u"y" + std::u16string(64, u'x'))) << "the box was full";
    EXPECT_EQ(entry.Bytes().text(), std::string(64, 'x'));
}

TEST(KeyTypedWithDisplay, ReplacesTheKeyAndFillsItsBoxNextTimeWhereItCanBeShown) {
    CurrentKey key = KeyfileKey();
    FakeEngine engine;
    engine.lastKey = "of the keyfile";
    KeyboardWithDisplay dialog(Direction::Encrypt, key);
    EXPECT_TRUE(dialog.Entry().Bytes().empty());
    dialog.Entry().Edit(Typed);
    dialog.Commit(KeyAnswer::Cancel, key, engine);
    ExpectUntouchedKeyfileKey(key);
    EXPECT_EQ(engine.lastKey, "of the keyfile");
    dialog.Entry().Edit(Typed);
    dialog.Commit(KeyAnswer::Yes, key, engine);
    ExpectTypedKey(key);
    EXPECT_TRUE(key.isTextKey && key.keyBuffer.empty());
    EXPECT_EQ(engine.lastKey, "") << "a key that was replaced lives on in the engine";

    KeyboardWithDisplay again(Direction::Encrypt, key);
    EXPECT_EQ(again.Entry().Bytes().text(), TypedBytes);
    again.Commit(KeyAnswer::No, key, engine);
    ExpectNoKey(key);
    EXPECT_TRUE(again.Entry().Bytes().empty());
    key.rawKeyEntry = SecretBytes::CopyOf("abcdefghijklmnop\n");
    EXPECT_TRUE(KeyboardWithDisplay(Direction::Encrypt, key).Entry().Bytes().empty());
}

class WithoutDisplay : public testing::Test {
  protected:
    void Type(std::u16string_view first, std::u16string_view second) {
        dialog.Edit(0, first);
        dialog.Edit(1, second);
    }
    void ExpectAfterFirst(std::u16string_view first, bool secondIsEnabled, bool showsOk) {
        dialog.Edit(0, first);
        EXPECT_EQ(dialog.SecondIsEnabled(), secondIsEnabled);
        EXPECT_EQ(dialog.ShowsOk(), showsOk);
    }
    KeyboardWithoutDisplay dialog{Direction::Encrypt};
    FakeEngine engine;
    ScriptedUser user;
};

TEST_F(WithoutDisplay, LeadsByTheFirstBoxAndTakesEntriesThatDifferInCaseAndBlanksOnly) {
    dialog.Edit(1, u"abcdefghijklmnoq");
    ExpectAfterFirst(u"abc", false, false);
    ExpectAfterFirst(Typed, true, true);
    ExpectAfterFirst(u"", false, false);
    ExpectAfterFirst(Typed, true, true);
    EXPECT_EQ(dialog.Entry(0).ChecksumLine(), "Checksum is 6304");
    EXPECT_FALSE(dialog.Edit(1, u"Ω"));
    EXPECT_TRUE(!dialog.Entry(1).Hint().empty() && dialog.Entry(0).Hint().empty());
    user.Expect(Notice("The key entries do not match!", "Error", BoxIcon::Exclamation));
    EXPECT_FALSE(dialog.EntriesMatch(user));
    EXPECT_TRUE(dialog.Entry(0).Bytes().empty());
    EXPECT_EQ(dialog.Entry(1).Bytes().text(), "abcdefghijklmnoq");
    for (const auto* first : {u"", u"abc"})
        ExpectAfterFirst(first, true, false); // the second stays open
    ExpectAfterFirst(Typed, true, true);
    ExpectAfterFirst(u"abc", false, false);
    Type(u"  abcd efgh ijkl mnop ", u"ABCDEFGHIJKLMNOP  ");
    EXPECT_TRUE(dialog.EntriesMatch(user)) << "but for case and blanks";
    EXPECT_EQ(dialog.Entry(0).Bytes().text(), TypedBytes);
}

TEST_F(WithoutDisplay, FollowsTheAnswerOfTheInspectionAndChangesNothingWhenCancelled) {
    using Case = std::tuple<Answer, bool, bool>;
    for (const auto& [inspects, accepted, cancelled] :
         {Case{Answer::No, false, false}, Case{Answer::Yes, true, false},
          Case{Answer::Yes, false, false}, Case{Answer::No, false, true}}) {
        CurrentKey key = KeyfileKey();
        key.rawKeyEntry = SecretBytes::CopyOf("typed with display before");
        FakeInspector inspector;
        inspector.answer = accepted;
        Type(Typed, Typed);
        user.Expect(Question("Inspect the key?", "Key specified"), inspects);
        const KeyAnswer answer = dialog.AskToInspect(user, inspector);
        ExpectUntouchedKeyfileKey(key);
        dialog.Commit(cancelled ? KeyAnswer::Cancel : answer, key, engine);
        EXPECT_TRUE(dialog.Entry(0).Bytes().empty() && dialog.Entry(1).Bytes().empty());
        if (cancelled) {
            ExpectUntouchedKeyfileKey(key);
        } else if (accepted || inspects == Answer::No) {
            ExpectTypedKey(key);
            EXPECT_TRUE(key.rawKeyEntry.empty());
            EXPECT_EQ(key.keyBuffer.text(), accepted ? TypedBytes : "");
        } else {
            ExpectNoKey(key);
        }
        EXPECT_EQ(inspector.calls, inspects == Answer::Yes ? 1 : 0);
        if (inspector.calls == 0) continue;
        EXPECT_EQ(inspector.buffer, TypedBytes);
        EXPECT_EQ(inspector.classLine, "Key entered at keyboard");
        EXPECT_TRUE(inspector.isTextKey && inspector.fileLine.empty());
        EXPECT_FALSE(inspector.isApparentlyRandom || inspector.isNewRandomKey);
    }
}

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
    const std::tuple<KeyState, bool, bool, bool, std::string> cases[] = {
        {KeyState::NoKey, true, true, true, ""},
        {KeyState::Keyboard, true, true, true, "(keyboard entry)"},
        {KeyState::Keyfile, true, true, false, "(new random key in keyfile)"},
        {KeyState::Keyfile, false, true, true, "(apparently random key in keyfile)"},
        {KeyState::Keyfile, false, false, true, "(text key in keyfile)"},
        {KeyState::Keyfile, false, false, false, "(non-random non-text key in keyfile)"}};
    for (const auto& [state, isNew, isRandom, isText, second] : cases) {
        CurrentKey key = KeyInState(state);
        key.isNewRandomKey = isNew;
        key.isApparentlyRandom = isRandom;
        key.isTextKey = isText;
        const bool isHeld = state != KeyState::NoKey;
        const KeyLabels expected{isHeld ? "Key specified" : "Key not specified", second};
        EXPECT_EQ(UpdateKeyLabels(key, Saved, user, engine), expected) << second;
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

TEST_F(Inspection, ShowsATypedKeyAsTextFirstAndKeepsRowsRowsWhateverItHolds) {
    KeyInspection typed = Of("abcd efgh ijkl mnop", false, true);
    EXPECT_EQ(typed.View(), KeyView::Ascii);
    EXPECT_EQ(typed.RandomnessLine() + typed.LayoutNote(), "");
    EXPECT_EQ(typed.ChecksumLine(), "Checksum is 6304.");
    EXPECT_EQ(Row(typed, KeyView::Ascii, 1), "nop");
    EXPECT_EQ(Row(typed, KeyView::Ascii, 2), "");
    typed.Accept(user); // no keyfile to remember
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
