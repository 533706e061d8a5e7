#pragma once

// Where a key choice meets the two windows that it opens on its way: the one in which the user
// looks at a key, and the one that collects a new random key.

#include "libs/system/secret.h"

#include <string>

namespace zr5 {

/// What the inspection shows of a key that is not the current one yet.
struct InspectedKey {
    const SecretBytes& buffer; ///< up to 64 bytes, as typed or read
    std::string classLine;     ///< "Key entered at keyboard", "Text key from file", …
    std::string fileLine;      ///< the keyfile as shown; empty for a typed key
    bool isApparentlyRandom = false;
    bool isTextKey = false;
    bool isNewRandomKey = false;
};

class KeyInspector {
  public:
    virtual ~KeyInspector() = default;
    /// Shows the key and returns whether the user accepted it.
    [[nodiscard]] virtual bool Inspect(const InspectedKey& key) = 0;
};

class KeyCollector {
  public:
    virtual ~KeyCollector() = default;
    /// The characters collected: KeyfileBytes of them, or fewer when the user closed the window
    /// before.
    [[nodiscard]] virtual SecretBytes Collect() = 0;
};

/// The windows of one choice.
struct KeyWindows {
    KeyInspector& inspector;
    KeyCollector& collector;
};

} // namespace zr5
