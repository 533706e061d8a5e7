#pragma once

// Warns of anti-virus programs that may object to the kinds of files in a list.

#include "util/user_port.h"

#include <cstdint>
#include <map>
#include <string>

namespace zr5 {

/// How many files there are of each extension that anti-virus programs watch.
class ExtensionCounts {
  public:
    /// `extension` is lower-cased and has no dot; others than those are not counted.
    void Add(const std::string& extension);
    [[nodiscard]] const std::map<std::string, std::uint64_t>& ByExtension() const {
        return counts_;
    }
    [[nodiscard]] std::uint64_t Files() const;

  private:
    std::map<std::string, std::uint64_t> counts_;
};

/// A box, if any such file was counted.
void WarnOfAntiVirus(UserPort& user, const ExtensionCounts& counts);

} // namespace zr5
