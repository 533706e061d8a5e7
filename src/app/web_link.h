#pragma once

// Addresses that the program opens in the web browser, and what the user reads when that fails.

#include "util/user_port.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace zr5 {

/// Opens `address`, with "https:" for "http:"; a failure is told in a box.
void OpenWebLink(UserPort& user, std::string address);

/// What the user reads for a result of opening `address` of 32 or less.
[[nodiscard]] std::string WebLinkError(std::int32_t code, std::string_view address);

/// The address of a file of this machine; `path` is absolute, in native bytes.
[[nodiscard]] std::string FileAddress(std::string_view path);

} // namespace zr5
