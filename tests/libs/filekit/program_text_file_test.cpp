#include "libs/filekit/program_text_file.h"

#include "libs/filekit/kit_fixture.h"

#include <array>

namespace zr5::test {
namespace {

using namespace std::string_literals;

TEST(ProgramTexts, AreReadFromLinesOfAnyKind) {
    const struct {
        std::string content;
        ProgramTextTable expected;
    } cases[] = {{"1 one\n2 two\n", {{1, "one"}, {2, "two"}}},
                 {"1 one\r\n2 two", {{1, "one"}, {2, "two"}}},
                 {"\xEF\xBB\xBF# mark\n1 one", {{1, "one"}}},
                 {"# comment\n\n1 one\n\r\n# 2 two\n", {{1, "one"}}},
                 {"1  blanks kept \n", {{1, " blanks kept "}}},
                 {"1 a\\nb\\\\n\\t\\", {{1, "a\r\nb\\n\\t\\"}}},
                 {"1 gro\xC3\x9F\n", {{1, "gro\xC3\x9F"}}},
                 {"1 " + std::string(1022, 'x') + "\\\\", {{1, std::string(1022, 'x') + '\\'}}}};
    for (const auto& entry : cases) {
        SCOPED_TRACE(entry.content.substr(0, 60));
        ProgramTextTable texts;
        EXPECT_EQ(ParseProgramTexts(entry.content, texts), std::ssize(entry.expected));
        EXPECT_EQ(texts, entry.expected);
    }
}

TEST(ProgramTexts, SayWhatIsWrongAndWhere) {
    std::string lines;
    for (int i = 1; i <= 499; ++i)
        lines += std::to_string(i) + " text\n";
    const struct {
        std::string content;
        std::int32_t code;
    } cases[] = {{"", -6},
                 {"\n# only comments\n", 0},
                 {"1 \xFF\n", -4},
                 {"1 one\n\n#\n2\n", -504},
                 {"32768 more\n", -501},
                 {"1 " + std::string(1024, 'x'), -1001},
                 {"1 one\n2 two\n1 again\n", -1503},
                 {lines, 499},
                 {lines + "\n", -3}};
    for (const auto& entry : cases) {
        SCOPED_TRACE(entry.content.substr(0, 60));
        ProgramTextTable texts{{7, "before"}};
        EXPECT_EQ(ParseProgramTexts(entry.content, texts), entry.code);
        EXPECT_EQ(texts.contains(7) && texts.size() == 1, entry.code <= 0) << "the texts stay";
    }
}

TEST_F(KitTest, FetchesTexts) {
    std::array<char, ProgramTextBufferLength> buffer{};
    const auto fetch = [&](std::int16_t number, std::int32_t room = ProgramTextBufferLength) {
        const std::int32_t length = kit->gt(number, 0, buffer, room, 1);
        return std::string(buffer.data(), static_cast<std::size_t>(length));
    };
    EXPECT_EQ(fetch(47), "");
    EXPECT_EQ(kit->lt(folder / "none", 0), program_text_code::NotOpened);
    const std::string path = folder.Write("texts", "47 Same as input file\n");
    EXPECT_EQ(kit->lt(path, 0), 1);
    EXPECT_EQ(fetch(47), "Same as input file");
    EXPECT_EQ(fetch(47, 4), "Same");
    EXPECT_EQ(fetch(48), "");
    disk.Fail(FsCall::Read, 1);
    EXPECT_EQ(kit->lt(path, 0), program_text_code::NotRead);
    folder.Write("texts", "1 x\n" + std::string(1U << 20U, '#'));
    EXPECT_EQ(kit->lt(path, 0), program_text_code::TooMuchText);
    EXPECT_EQ(fetch(47), "Same as input file") << "a failure keeps texts";
}

} // namespace
} // namespace zr5::test
