#pragma once

// The windows of a key choice without windows: what they were shown, and what a test answers.

#include "keys/key_windows.h"

#include <deque>
#include <functional>
#include <string>

namespace zr5::test {

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
