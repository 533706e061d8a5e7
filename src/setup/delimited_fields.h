#pragma once

// Reads a text field by field, as the setup files of this program have always been read.

#include <cstdint>
#include <optional>
#include <string_view>

namespace zr5 {

/// Fields end at a comma or at the end of a line (CR LF, LF or CR). Blanks and TABs around a
/// field do not belong to it. A field in double quotes may hold blanks and commas, but no line
/// end; there is no way to write a quote inside. No field holds a NUL.
class DelimitedFields {
  public:
    /// `text` outlives the reader and what it returns.
    explicit DelimitedFields(std::string_view text) : rest_(text) {}

    /// The next field; nothing at the end of the text and where the field is not well formed.
    [[nodiscard]] std::optional<std::string_view> NextText();
    /// The same for a field that is a whole number of 16 bits and nothing else.
    [[nodiscard]] std::optional<std::int16_t> NextNumber();

  private:
    void SkipBlanks();
    [[nodiscard]] bool SkipDelimiter();

    std::string_view rest_;
};

} // namespace zr5
