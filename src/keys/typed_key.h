#pragma once

// The rules of the two dialogs in which a key is typed: once and seen, or twice and never seen.

#include "keys/current_key.h"
#include "keys/key_windows.h"
#include "libs/system/secret.h"
#include "setup/operation_setup.h"
#include "util/user_port.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace zr5 {

/// How a dialog for typing a key ended.
enum class KeyAnswer {
    Yes,    ///< use the key
    No,     ///< use no key, and drop the current one
    Cancel, ///< leave the current key as it is
};

/// Shown under a key box that refused an edit.
inline constexpr std::string_view KeyCharacterHint = "This character cannot be part of a key.";
/// Shown under a key box that got a no-break blank, which looks like one that does not count.
inline constexpr std::string_view NoBreakBlankHint = "A no-break blank is ignored like any blank.";

/// What the user typed (UTF-16, composed) as bytes of code page 1252, no-break blanks as blanks;
/// nullopt when it holds a character that the code page lacks.
[[nodiscard]] std::optional<SecretBytes> TypedKeyBytes(std::u16string_view typed);

/// What one box for a key holds.
class KeyEntry {
  public:
    /// The box's text was changed to `typed` (UTF-16, composed). False when the change is refused:
    /// the box keeps the entry that it had. A character that no key has, or a no-break blank, lets
    /// a hint show until the next change; of a text longer than MaxKeyLength the end is cut off,
    /// unless the box was full already.
    bool Edit(std::u16string_view typed);
    /// Empty when there is nothing to say.
    [[nodiscard]] std::string_view Hint() const { return hint_; }
    [[nodiscard]] bool IsLongEnough() const;
    /// "Checksum is 1234", of the key that the entry is.
    [[nodiscard]] std::string ChecksumLine() const;
    [[nodiscard]] const SecretBytes& Bytes() const { return bytes_; }
    void Set(SecretBytes bytes) { bytes_ = std::move(bytes); }
    void Clear() { bytes_.Clear(); }

  private:
    SecretBytes bytes_;
    std::string_view hint_;
};

/// The rules of `frmKeyboardWithDisplay`.
class KeyboardWithDisplay {
  public:
    /// Begins with the key that was last accepted here, when there is one that can be shown.
    KeyboardWithDisplay(Direction operation, const CurrentKey& key);

    [[nodiscard]] const std::string& Prompt() const { return prompt_; }
    [[nodiscard]] KeyEntry& Entry() { return entry_; }
    /// Carries out the answer with which the dialog was closed. `Yes` needs an entry that is long
    /// enough.
    void Commit(KeyAnswer answer, CurrentKey& key, CipherEngine& engine);

  private:
    std::string prompt_;
    KeyEntry entry_;
};

/// The rules of `frmKeyboardWithoutDisplay`.
class KeyboardWithoutDisplay {
  public:
    explicit KeyboardWithoutDisplay(Direction operation);

    [[nodiscard]] const std::string& Prompt() const { return prompt_; }
    /// Of box 0 or 1. The prompt to type the key again is bold, and the checksum of the first entry
    /// shows, while the first is long enough.
    [[nodiscard]] const KeyEntry& Entry(std::size_t box) const { return entries_.at(box); }
    bool Edit(std::size_t box, std::u16string_view typed);
    /// The second box also stays open after a mismatch has emptied the first, until the first is
    /// long enough again.
    [[nodiscard]] bool SecondIsEnabled() const;
    [[nodiscard]] bool ShowsOk() const;

    /// "OK": trims both entries and compares them as canonical keys. When they differ, the user
    /// is told, the first entry is emptied, and the dialog stays open with the second box in
    /// focus. When they agree, the dialog closes and `AskToInspect` follows.
    [[nodiscard]] bool EntriesMatch(UserPort& user);
    /// Offers to inspect the entry. Yes or No.
    [[nodiscard]] KeyAnswer AskToInspect(UserPort& user, KeyInspector& inspector);
    /// Carries out the answer with which the dialog was closed. `Yes` needs matching entries.
    void Commit(KeyAnswer answer, CurrentKey& key, CipherEngine& engine);

  private:
    std::string prompt_;
    std::array<KeyEntry, 2> entries_;
    bool afterMismatch_ = false;
    bool inspected_ = false;
};

} // namespace zr5
