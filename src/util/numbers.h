#pragma once

// Numbers as texts: "," between thousands and "." before decimals, whatever the locale; and the
// word that follows a number of files.

#include <cstdint>
#include <string>

namespace zr5 {

/// 1234567 becomes "1,234,567".
[[nodiscard]] std::string WithThousands(std::uint64_t number);
/// `decimals` from 0 to 9; rounded half away from zero: (1234.565, 2) becomes "1,234.57" or
/// "1,234.56" as the nearest binary number lies.
[[nodiscard]] std::string WithThousands(double number, int decimals);
/// A number after a letter, ":" or "=": one blank before a number that is not negative.
[[nodiscard]] std::string AfterText(std::int64_t number);

/// "file" for one, else "files".
[[nodiscard]] std::string FileWord(std::uint64_t count);

} // namespace zr5
