#include "libs/cipher/engine_fixture.h"
#include "support/known_answers.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

// The files of tests/data: what was encrypted once opens for good, with the same key typed or
// read from the same keyfile, and the format does not change unnoticed.

namespace zr5::test {
namespace {

const std::filesystem::path Data = KNOWN_ANSWERS;

std::string Stored(const std::string& name) {
    std::ifstream file(Data / name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

using KnownAnswers = EngineTest;

TEST_F(KnownAnswers, OpenAsTheTableSays) {
    std::istringstream table(Stored("known_answers.txt"));
    std::set<std::string> named;
    for (std::string line; std::getline(table, line);) {
        if (line.empty() || line.starts_with('#')) continue;
        SCOPED_TRACE(line);
        std::istringstream row(line);
        std::string name, key, digest;
        std::int32_t code = 1;
        std::size_t bytes = 0;
        ASSERT_TRUE(row >> name >> key >> code >> bytes >> digest);
        folder.Empty();
        folder.Write("in", Stored(name));
        EXPECT_EQ(DecryptPath(folder / "in", folder / "out", KnownKey(key).text()), code);
        const std::string out = folder.Has("out") ? folder.Read("out") : "";
        EXPECT_EQ(out.size(), bytes);
        EXPECT_EQ(folder.Has("out") ? Md5Text(out) : "-", digest);
        if (code == engine_code::Success) {
            EXPECT_TRUE(out == CountedLines(bytes));
        }
        named.insert(name);
    }
    for (const auto& file : std::filesystem::directory_iterator(Data)) {
        const std::string name = file.path().filename();
        EXPECT_EQ(named.contains(name), name.ends_with(".zr5")) << name;
    }
}

TEST_F(KnownAnswers, AreMadeAgainToTheByte) {
    for (const auto& [name, bytes] : MakeKnownFiles())
        EXPECT_TRUE(Stored(name) == bytes) << name;
}

} // namespace
} // namespace zr5::test
