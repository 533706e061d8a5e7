#pragma once

// Looks through the memory of this very process for what should no longer be there.

#include <string>
#include <string_view>
#include <vector>

namespace zr5::test {

/// A secret that does not itself lie in memory in the form that is searched for.
class MaskedLetters {
  public:
    /// Letters only; the caller wipes its own.
    void Add(char letter) { masked_.push_back(static_cast<char>(letter ^ Mask)); }
    [[nodiscard]] std::size_t size() const { return masked_.size(); }
    [[nodiscard]] char operator[](std::size_t i) const {
        return static_cast<char>(masked_[i] ^ Mask);
    }

  private:
    static constexpr char Mask = '\x7F';
    std::vector<char> masked_;
};

/// Where in the writable memory of this process eight or more letters of `secret` stand in a
/// row, small or capital, in characters of one, two or four bytes: the name of each mapping and
/// the width, once for each place.
[[nodiscard]] std::vector<std::string> FindInOwnMemory(const MaskedLetters& secret);

} // namespace zr5::test
