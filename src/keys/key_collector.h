#pragma once

// Where the choice of a keyfile meets the window that collects a new random key from the user.

#include "libs/system/secret.h"

namespace zr5 {

class KeyCollector {
  public:
    virtual ~KeyCollector() = default;
    /// The characters collected: KeyfileBytes of them, or fewer when the user closed the window
    /// before.
    [[nodiscard]] virtual SecretBytes Collect() = 0;
};

} // namespace zr5
