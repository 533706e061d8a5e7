#pragma once

// The key frame, where the user chooses how to give a key, and the two lines on the main window
// that tell whether there is one and where it came from.

#include "keys/current_key.h"
#include "setup/operation_setup.h"
#include "util/user_port.h"

#include <array>
#include <string>

namespace zr5 {

/// `lblKeyFrom(0)` and `lblKeyFrom(1)`.
using KeyLabels = std::array<std::string, 2>;

/// What the labels read before any key is chosen.
[[nodiscard]] KeyLabels NoKeyLabels();

/// What the labels are to read. An abandoned choice brings `saved` back, the captions from when the
/// key frame was opened. A key without content is told to the user as an error and dropped.
[[nodiscard]] KeyLabels UpdateKeyLabels(CurrentKey& key, const KeyLabels& saved, UserPort& user,
                                        CipherEngine& engine);

class KeyFrame {
  public:
    /// The user asked for the frame. Unless it is shown already, the captions that the key labels
    /// `shown` have are kept, for a choice that is abandoned.
    void Open(CurrentKey& key, const KeyLabels& shown);
    /// The button that gets the focus when the frame has closed.
    enum class FocusAfter { KeyFrom, DoIt };
    [[nodiscard]] FocusAfter Close(const CurrentKey& key);

    /// While the frame is shown, `fraMain` and `fraMenu` are disabled.
    [[nodiscard]] bool IsOpen() const { return isOpen_; }
    [[nodiscard]] const KeyLabels& SavedLabels() const { return savedLabels_; }

  private:
    KeyLabels savedLabels_ = NoKeyLabels();
    bool isOpen_ = false;
};

/// Whether the frame offers `cmdKeyFile(1)`, "Create random keyfile".
[[nodiscard]] bool OffersNewKeyfile(Direction operation) noexcept;

/// The button "Erase key": erases, and says so. The caller updates the labels and closes the
/// frame.
void EraseKeyAndTell(CurrentKey& key, CipherEngine& engine, UserPort& user);

} // namespace zr5
