#include "keys/normalise.h"
#include "keys/typed_key.h"
#include "support/fakes.h"
#include "support/key_windows.h"
#include "support/scripted_user.h"

#include <gtest/gtest.h>

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
    KeyboardWithoutDisplay dialog{Direction::Encrypt};
    FakeEngine engine;
    ScriptedUser user;
};

TEST_F(WithoutDisplay, TakesEntriesThatDifferInCaseAndBlanksOnly) {
    Type(Typed, u"ponmlkjihgfedcba");
    EXPECT_TRUE(dialog.SecondIsEnabled() && dialog.ShowsOk());
    for (const auto* first : {u"abc", u""}) {
        dialog.Edit(0, first);
        EXPECT_FALSE(dialog.SecondIsEnabled() || dialog.ShowsOk());
    }
    dialog.Edit(0, Typed);
    EXPECT_EQ(dialog.Entry(0).ChecksumLine(), "Checksum is 6304");
    EXPECT_FALSE(dialog.Edit(1, u"Ω"));
    EXPECT_TRUE(!dialog.Entry(1).Hint().empty() && dialog.Entry(0).Hint().empty());
    Type(u"  abcd efgh ijkl mnop ", u"ABCDEFGHIJKLMNOP  ");
    EXPECT_TRUE(dialog.EntriesMatch(user)) << "but for case and blanks";
    EXPECT_EQ(dialog.Entry(0).Bytes().text(), TypedBytes);
}

TEST_F(WithoutDisplay, EmptiesTheFirstBoxAfterAMismatchAndKeepsTheSecondOpen) {
    Type(Typed, u"abcdefghijklmnoq");
    user.Expect(Notice("The key entries do not match!", "Error", BoxIcon::Exclamation));
    EXPECT_FALSE(dialog.EntriesMatch(user));
    EXPECT_TRUE(dialog.Entry(0).Bytes().empty());
    EXPECT_EQ(dialog.Entry(1).Bytes().text(), "abcdefghijklmnoq");
    for (const auto* first : {u"", u"abc"}) {
        dialog.Edit(0, first);
        EXPECT_TRUE(dialog.SecondIsEnabled() && !dialog.ShowsOk());
    }
    dialog.Edit(0, Typed);
    EXPECT_TRUE(dialog.ShowsOk());
    dialog.Edit(0, u"abc");
    EXPECT_FALSE(dialog.SecondIsEnabled());
}

TEST_F(WithoutDisplay, FollowsTheAnswerOfTheInspectionAndChangesNothingWhenCancelled) {
    struct Case {
        Answer inspects;
        bool accepted, cancelled;
    };
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

} // namespace
} // namespace zr5::test
