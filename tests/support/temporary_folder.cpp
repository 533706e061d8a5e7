#include "support/temporary_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <stdexcept>
#include <sys/stat.h>

namespace zr5::test {

namespace fs = std::filesystem;

std::string PatternBytes(std::size_t length, unsigned seed) {
    std::minstd_rand generator(seed);
    std::string bytes(length, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(generator() >> 16U);
    return bytes;
}

TemporaryFolder::TemporaryFolder()
    : path_((fs::temp_directory_path() / "zr5-test-").native() + std::string(6, 'X')) {
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary folder: " + path_);
    path_ += '/';
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string TemporaryFolder::Write(std::string_view name, std::string_view content) const {
    std::string path = *this / name;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    EXPECT_TRUE(file) << "cannot write " << path;
    return path;
}

std::string TemporaryFolder::Read(std::string_view name) const {
    std::ifstream file(*this / name, std::ios::binary);
    EXPECT_TRUE(file) << "cannot read " << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

bool TemporaryFolder::Has(std::string_view name) const {
    return fs::exists(fs::symlink_status(*this / name));
}

std::set<std::string> TemporaryFolder::Names() const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(path_))
        names.insert(entry.path().filename().native());
    return names;
}

void TemporaryFolder::MakeSpecials(std::string_view target) const {
    fs::create_directory(*this / "folder");
    EXPECT_EQ(mkfifo((*this / "pipe").c_str(), 0600), 0);
    fs::create_symlink(*this / target, *this / "link");
    fs::create_symlink(*this / "nowhere", *this / "dangling");
}

void TemporaryFolder::Remove(std::string_view name) const {
    fs::remove_all(*this / name);
}

void TemporaryFolder::Empty() const {
    for (const std::string& name : Names())
        Remove(name);
}

} // namespace zr5::test
