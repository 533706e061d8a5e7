#pragma once

// The rules of the dialog in which a key is typed twice and never seen.

#include "keys/key_inspector.h"
#include "keys/typed_key.h"
#include "setup/operation_setup.h"
#include "util/user_port.h"

#include <array>
#include <string>
#include <string_view>

namespace zr5 {

class KeyboardWithoutDisplay {
  public:
    explicit KeyboardWithoutDisplay(Function operation);

    [[nodiscard]] const std::string& Prompt() const { return prompt_; }
    /// What box 0 or 1 holds.
    [[nodiscard]] const SecretBytes& Entry(std::size_t box) const { return entries_.at(box); }
    /// As in the dialog with display, for box 0 or 1.
    bool Edit(std::size_t box, std::u16string_view typed);

    /// Whether the prompt to type the key again is bold, and the checksum shows.
    [[nodiscard]] bool FirstIsLongEnough() const;
    /// The second box also stays open after a mismatch has emptied the first, until the first is
    /// long enough again.
    [[nodiscard]] bool SecondIsEnabled() const;
    [[nodiscard]] bool ShowsOk() const;
    /// Always that of the first entry.
    [[nodiscard]] std::string ChecksumLine() const;
    [[nodiscard]] bool ShowsHint(std::size_t box) const { return showsHint_.at(box); }

    /// "OK": trims both entries and compares them as canonical keys. When they differ, the user
    /// is told, the first entry is emptied, and the dialog stays open with the second box in
    /// focus. When they agree, the dialog closes and `AskToInspect` follows.
    [[nodiscard]] bool EntriesMatch(UserPort& user);
    /// Offers to inspect the entry. Yes or No.
    [[nodiscard]] KeyAnswer AskToInspect(UserPort& user, KeyInspector& inspector);
    /// Carries out the answer with which the dialog was closed. `Yes` needs matching entries.
    void Commit(KeyAnswer answer, CurrentKey& key);

  private:
    std::string prompt_;
    std::array<SecretBytes, 2> entries_;
    std::array<bool, 2> showsHint_{};
    bool afterMismatch_ = false;
    bool inspected_ = false;
};

} // namespace zr5
