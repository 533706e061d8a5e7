#pragma once

// Where a key choice meets the window in which the user looks at a key before using it.

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

} // namespace zr5
