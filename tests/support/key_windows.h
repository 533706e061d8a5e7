#pragma once

// The windows of a key choice without windows: what they were shown, and what a test answers. And
// what every choice does with the key that there was before.

#include "keys/key_windows.h"

#include <deque>
#include <functional>
#include <gtest/gtest.h>
#include <string>

namespace zr5::test {

/// A key as a new random keyfile leaves it.
inline CurrentKey KeyfileKey() {
    CurrentKey key;
    key.keyText = SecretBytes::CopyOf("THE KEY OF A KEYFILE");
    key.keyBuffer = SecretBytes::CopyOf("the key of a keyfile");
    key.keyfilePath = "/home/a/key";
    key.checksum = 4321;
    key.keyState = KeyState::Keyfile;
    key.isNewRandomKey = true;
    key.isApparentlyRandom = true;
    return key;
}

inline void ExpectUntouchedKeyfileKey(const CurrentKey& key) {
    EXPECT_EQ(key.keyText.text(), "THE KEY OF A KEYFILE");
    EXPECT_EQ(key.keyfilePath, "/home/a/key");
    EXPECT_EQ(key.checksum, 4321);
    EXPECT_EQ(key.Source(), KeySource::NewRandomKeyfile);
}

inline void ExpectNoKey(const CurrentKey& key) {
    EXPECT_FALSE(key.IsHeld() || key.keyChoiceAbandoned);
    EXPECT_TRUE(key.keyText.empty() && key.keyBuffer.empty() && key.rawKeyEntry.empty());
    EXPECT_TRUE(key.keyfilePath.empty());
}

class FakeInspector final : public KeyInspector {
  public:
    bool answer = true;
    int calls = 0;
    std::string buffer, classLine, fileLine;
    bool isApparentlyRandom = false, isTextKey = false, isNewRandomKey = false;
    std::function<void()> onInspect; ///< runs while the key is looked at

    bool Inspect(const InspectedKey& key) override {
        ++calls;
        buffer = key.buffer.text();
        classLine = key.classLine;
        fileLine = key.fileLine;
        isApparentlyRandom = key.isApparentlyRandom;
        isTextKey = key.isTextKey;
        isNewRandomKey = key.isNewRandomKey;
        if (onInspect) onInspect();
        return answer;
    }
};

/// Hands out `keys` one after the other, then nothing.
class FakeCollector final : public KeyCollector {
  public:
    std::deque<std::string> keys;

    SecretBytes Collect() override {
        if (keys.empty()) return {};
        const std::string next = keys.front();
        keys.pop_front();
        return SecretBytes::CopyOf(next);
    }
};

} // namespace zr5::test
