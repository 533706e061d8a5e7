#pragma once

// Where the program's texts meet the toolkit's: UTF-8 with CR LF inside, QString with LF here,
// which is wiped when it held a key.

#include <QString>
#include <string>
#include <string_view>

namespace zr5 {

/// For windows: CR LF becomes LF.
[[nodiscard]] QString ToQt(std::string_view text);
/// From windows: LF becomes CR LF.
[[nodiscard]] std::string FromQt(const QString& text);

/// Overwrites the characters where they are, also those that other strings share: that is the
/// purpose. Text without a buffer of its own (capacity 0) is constant and not overwritten.
void OverwriteInPlace(const QString& text);

} // namespace zr5
