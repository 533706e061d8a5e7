#pragma once

// The rules of the dialog in which a key is typed once and seen as it is typed.

#include "keys/typed_key.h"
#include "setup/operation_setup.h"

#include <string>
#include <string_view>

namespace zr5 {

class KeyboardWithDisplay {
  public:
    /// Begins with the key that was last accepted here, when there is one that can be shown.
    KeyboardWithDisplay(Function operation, const CurrentKey& key);

    [[nodiscard]] const std::string& Prompt() const { return prompt_; }
    /// What the box holds.
    [[nodiscard]] const SecretBytes& Entry() const { return entry_; }
    /// The box's text was changed to `typed` (UTF-16, composed). False when the change is
    /// refused: the box keeps the entry that it had, and the hint shows until the next change.
    bool Edit(std::u16string_view typed);

    /// Whether "Yes", "No", the checksum and "Use this key?" show.
    [[nodiscard]] bool IsAcceptable() const;
    [[nodiscard]] std::string ChecksumLine() const;
    [[nodiscard]] bool ShowsHint() const { return showsHint_; }

    /// Carries out the answer with which the dialog was closed. `Yes` needs an acceptable entry.
    void Commit(KeyAnswer answer, CurrentKey& key);

  private:
    std::string prompt_;
    SecretBytes entry_;
    bool showsHint_ = false;
};

} // namespace zr5
