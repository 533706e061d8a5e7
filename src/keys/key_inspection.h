#pragma once

// The rules of the window in which the user looks at a key before using it: three views of its
// bytes, as a table of four rows that can be read out, and what is known of it.

#include "keys/key_windows.h"
#include "libs/filekit/file_kit.h"
#include "libs/system/secret.h"
#include "util/user_port.h"

#include <cstddef>
#include <string>

namespace zr5 {

enum class KeyView { Decimal, Hexadecimal, Ascii };

class KeyInspection {
  public:
    static constexpr std::size_t Rows = 4;
    static constexpr std::size_t BytesInARow = 16;

    /// `key` and `fileKit` outlive the inspection. A text key is shown as text first, every
    /// other one in decimal.
    KeyInspection(const InspectedKey& key, FileKit& fileKit);

    [[nodiscard]] const std::string& ClassLine() const { return key_.classLine; }
    [[nodiscard]] const std::string& FileLine() const { return key_.fileLine; }
    /// "Randomness is 0.960."; empty for a key that is not apparently random.
    [[nodiscard]] std::string RandomnessLine() const;
    /// "Checksum is 1234.", with a full stop here.
    [[nodiscard]] std::string ChecksumLine() const;

    /// Only a text key can be seen as text.
    [[nodiscard]] bool OffersAscii() const { return key_.isTextKey && !key_.isApparentlyRandom; }
    [[nodiscard]] KeyView View() const { return view_; }
    void Select(KeyView view) { view_ = view; }

    /// Row `row` (from 0) of the view, in UTF-8; empty beyond the key's end. Decimal: each byte
    /// right-aligned in three characters, then a blank; a NUL of a text key is four blanks.
    /// Hexadecimal: each byte as a blank and two digits. As text: each byte one character; a
    /// character of the layout is shown by a sign of its own, so that a row stays a row.
    [[nodiscard]] SecretBytes Row(std::size_t row) const;
    /// What the signs for layout characters stand for; empty when the view shows none.
    [[nodiscard]] std::string LayoutNote() const;

    /// The user wants to use the key; of a new one, the name of the keyfile is to be remembered.
    void Accept(UserPort& user) const;

  private:
    [[nodiscard]] std::string_view Part(std::size_t row) const;

    const InspectedKey& key_;
    FileKit& fileKit_;
    KeyView view_;
};

} // namespace zr5
