#pragma once

// A folder of a test's own, gone with everything in it when the test ends.

#include <set>
#include <string>
#include <string_view>

namespace zr5::test {

/// `length` bytes that no cipher or copy can get right by accident; the same for the same seed.
[[nodiscard]] std::string PatternBytes(std::size_t length, unsigned seed = 1);

class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::string& Path() const { return path_; }
    [[nodiscard]] std::string operator/(std::string_view name) const {
        return path_ + std::string(name);
    }

    std::string Write(std::string_view name, std::string_view content) const;
    /// The whole content of a file; fails the test when it cannot be read.
    [[nodiscard]] std::string Read(std::string_view name) const;
    [[nodiscard]] bool Has(std::string_view name) const;
    [[nodiscard]] std::set<std::string> Names() const;
    /// Makes what is no regular file: `folder`, `pipe`, `link` (to `target`), `dangling`.
    void MakeSpecials(std::string_view target) const;
    void Remove(std::string_view name) const;
    void Empty() const;

  private:
    std::string path_;
};

} // namespace zr5::test
