#pragma once

// Where the program's texts meet the toolkit's: UTF-8 with CR LF inside, QString with LF here.

#include <QString>
#include <string>
#include <string_view>

namespace zr5 {

/// For windows: CR LF becomes LF.
[[nodiscard]] QString ToQt(std::string_view text);
/// From windows: LF becomes CR LF.
[[nodiscard]] std::string FromQt(const QString& text);

} // namespace zr5
