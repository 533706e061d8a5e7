#include "keys/key_frame.h"

#include "support/fakes.h"
#include "support/scripted_user.h"

#include <gtest/gtest.h>

namespace zr5 {
namespace {

using test::ScriptedUser;

const KeyLabels Saved{"before", "(before)"};
const KeyLabels Shown{"now", "(now)"};

CurrentKey KeyInState(std::int16_t state) {
    CurrentKey key;
    key.keyState = state;
    key.keyText = SecretBytes::CopyOf("ABCDEFGHIJKLMNOP");
    return key;
}

TEST(KeyLabels, TellWhereTheKeyCameFrom) {
    struct Case {
        std::int16_t state;
        bool isNew, isRandom, isText;
        std::string first, second;
    };
    const Case cases[] = {
        {-1, true, true, true, "Key not specified", ""},
        {0, true, true, true, "Key specified", "(keyboard entry)"},
        {2, true, true, false, "Key specified", "(new random key in keyfile)"},
        {2, false, true, true, "Key specified", "(apparently random key in keyfile)"},
        {2, false, false, true, "Key specified", "(text key in keyfile)"},
        {2, false, false, false, "Key specified", "(non-random non-text key in keyfile)"},
        {1, false, false, false, "Key specified", "(now)"},
    };
    for (const Case& c : cases) {
        CurrentKey key = KeyInState(c.state);
        key.isNewRandomKey = c.isNew;
        key.isApparentlyRandom = c.isRandom;
        key.isTextKey = c.isText;
        ScriptedUser user;
        const KeyLabels expected{c.first, c.second};
        EXPECT_EQ(UpdateKeyLabels(key, Shown, Saved, user), expected) << c.second;
    }
}

TEST(KeyLabels, ComeBackAfterAnAbandonedChoice) {
    CurrentKey key;
    KeyFrame frame;
    key.keyChoiceAbandoned = true;
    ScriptedUser user;
    EXPECT_EQ(UpdateKeyLabels(key, Shown, Saved, user), Saved);
    frame.Open(key, Saved);
    EXPECT_TRUE(frame.IsOpen());
    EXPECT_FALSE(key.keyChoiceAbandoned);
    frame.Open(key, Shown);
    EXPECT_EQ(frame.SavedLabels(), Saved) << "saved once";
    static_cast<void>(frame.Close(key));
    EXPECT_FALSE(frame.IsOpen());
    frame.Open(key, Shown);
    EXPECT_EQ(frame.SavedLabels(), Shown);
}

TEST(KeyLabels, AreBlankAndTheKeyIsDroppedWhenItIsEmpty) {
    for (const std::int16_t state : {key_state::Keyboard, key_state::Keyfile}) {
        CurrentKey key = KeyInState(state);
        key.keyText.Clear();
        ScriptedUser user;
        user.Expect(Notice("Error processing key!", "Error", BoxIcon::Critical));
        EXPECT_EQ(UpdateKeyLabels(key, Shown, Saved, user), KeyLabels{});
        EXPECT_FALSE(key.IsHeld());
    }
}

TEST(KeyFrame, LeadsOnToTheOperationOnlyAfterATypedKey) {
    using enum KeyFrame::FocusAfter;
    KeyFrame frame;
    EXPECT_EQ(frame.Close(KeyInState(key_state::Keyboard)), DoIt);
    EXPECT_EQ(frame.Close(KeyInState(key_state::Keyfile)), KeyFrom);
    EXPECT_EQ(frame.Close(KeyInState(key_state::NoKey)), KeyFrom);
}

TEST(ErasingTheKey, LeavesNothingHereOrInTheEngine) {
    CurrentKey key = KeyInState(key_state::Keyfile);
    key.keyBuffer = SecretBytes::CopyOf("buffer");
    key.rawKeyEntry = SecretBytes::CopyOf("raw");
    key.keyfilePath = "/home/a/key";
    key.keyChoiceAbandoned = true;
    test::FakeEngine engine;
    engine.lastKey = "ABCDEFGHIJKLMNOP";
    ScriptedUser user;
    user.Expect(Notice("Done", "Erase key"));
    EraseKeyAndTell(key, engine, user);
    EXPECT_TRUE(key.keyText.empty());
    EXPECT_TRUE(key.keyBuffer.empty());
    EXPECT_TRUE(key.rawKeyEntry.empty());
    EXPECT_TRUE(key.keyfilePath.empty());
    EXPECT_EQ(engine.lastKey, "");
    EXPECT_EQ(UpdateKeyLabels(key, Shown, Saved, user), NoKeyLabels());
}

} // namespace
} // namespace zr5
