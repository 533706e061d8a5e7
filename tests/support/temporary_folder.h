#pragma once

// A folder of a test's own, gone with everything in it when the test ends.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace zr5::test {

/// `length` bytes that no cipher or copy can get right by accident; the same for the same seed.
[[nodiscard]] inline std::string PatternBytes(std::size_t length, unsigned seed = 1) {
    std::minstd_rand generator(seed);
    std::string bytes(length, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(generator() >> 16U);
    return bytes;
}

class TemporaryFolder {
  public:
    TemporaryFolder() {
        if (mkdtemp(path_.data()) == nullptr)
            throw std::runtime_error("no temporary folder: " + path_);
        path_ += '/';
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::string& Path() const { return path_; }
    [[nodiscard]] std::string operator/(std::string_view name) const {
        return path_ + std::string(name);
    }

    std::string Write(std::string_view name, std::string_view content) const {
        std::string path = *this / name;
        std::ofstream file(path, std::ios::binary | std::ios::trunc);
        file.write(content.data(), static_cast<std::streamsize>(content.size()));
        file.close();
        EXPECT_TRUE(file) << "cannot write " << path;
        return path;
    }
    /// The whole content of a file; fails the test when it cannot be read.
    [[nodiscard]] std::string Read(std::string_view name) const {
        std::ifstream file(*this / name, std::ios::binary);
        EXPECT_TRUE(file) << "cannot read " << name;
        return {std::istreambuf_iterator<char>(file), {}};
    }
    [[nodiscard]] bool Has(std::string_view name) const {
        return std::filesystem::exists(std::filesystem::symlink_status(*this / name));
    }
    [[nodiscard]] std::set<std::string> Names() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path_))
            names.insert(entry.path().filename().native());
        return names;
    }
    /// Every file, below this folder too, by its path, with its content.
    [[nodiscard]] std::map<std::string, std::string> Contents() const {
        std::map<std::string, std::string> contents;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(path_)) {
            const std::string name = entry.path().native().substr(path_.size());
            contents[name] = entry.is_regular_file() ? Read(name) : std::string{};
        }
        return contents;
    }
    /// Makes what is no regular file: `folder`, `pipe`, `link` (to `target`), `dangling`.
    void MakeSpecials(std::string_view target) const {
        std::filesystem::create_directory(*this / "folder");
        EXPECT_EQ(mkfifo((*this / "pipe").c_str(), 0600), 0);
        std::filesystem::create_symlink(*this / target, *this / "link");
        std::filesystem::create_symlink(*this / "nowhere", *this / "dangling");
    }
    void Remove(std::string_view name) const { std::filesystem::remove_all(*this / name); }
    void Empty() const {
        for (const std::string& name : Names())
            Remove(name);
    }

  private:
    std::string path_ = std::filesystem::temp_directory_path() / "zr5-test-XXXXXX";
};

} // namespace zr5::test
