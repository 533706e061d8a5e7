#pragma once

// The rules of opening and closing the key frame, where the user chooses how to give a key.

#include "keys/current_key.h"
#include "keys/key_labels.h"
#include "setup/operation_setup.h"
#include "util/user_port.h"

namespace zr5 {

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
[[nodiscard]] bool OffersNewKeyfile(Function operation) noexcept;

/// The button "Erase key": erases, and says so. The caller updates the labels and closes the
/// frame.
void EraseKeyAndTell(CurrentKey& key, CipherEngine& engine, UserPort& user);

} // namespace zr5
