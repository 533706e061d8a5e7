#pragma once

// The two lines on the main window that tell whether there is a key, and where it came from.

#include "keys/current_key.h"
#include "util/user_port.h"

#include <array>
#include <string>

namespace zr5 {

/// `lblKeyFrom(0)` and `lblKeyFrom(1)`.
using KeyLabels = std::array<std::string, 2>;

/// What the labels read before any key is chosen.
[[nodiscard]] KeyLabels NoKeyLabels();

/// What the labels are to read, after `shown`. An abandoned choice brings `saved` back, the
/// captions from when the key frame was opened. A key without content is told to the user as an
/// error and dropped.
[[nodiscard]] KeyLabels UpdateKeyLabels(CurrentKey& key, const KeyLabels& shown,
                                        const KeyLabels& saved, UserPort& user);

} // namespace zr5
