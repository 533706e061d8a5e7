#include "util/program_text.h"

#include "libs/filekit/program_text_file.h"
#include "support/fixtures.h"

#include <algorithm>
#include <array>
#include <fstream>

namespace zr5::test {
namespace {

TEST(ProgramTextLoading, TellsWhyItFailed) {
    using enum TextFileStatus;
    for (const auto& [result, message] :
         {std::pair{TextFileResult{NothingRead}, "No program text was read."},
          {{NotOpened}, "Cannot open file containing program text.\r\n/opt/zr5/zr5e.dat"},
          {{MissingString, 1}, "Missing string at line 1."},
          {{StringTooLong, 499}, "String too long at line 499."},
          {{Duplicate, 2}, "Duplicate in program text at line 2."}}) {
        FakeKit kit;
        kit.loadResult = result;
        ScriptedUser user;
        user.Expect(Notice(message, "Program text", BoxIcon::Critical));
        LoadProgramText(kit, user, "/opt/zr5", "zr5e.dat");
    }
    FakeKit kit; // says nothing
    ScriptedUser user;
    LoadProgramText(kit, user, "C:\\Programs\\", "zr5e.dat");
    EXPECT_EQ(kit.loaded, std::vector<std::string>{"C:\\Programs\\zr5e.dat"});
}

TEST(ProgramText, IsEmptyWhereNoneIsMeant) {
    FakeKit kit;
    kit.texts = {{18, "Same as input folder"}, {47, "~"}, {48, "~~"}};
    EXPECT_EQ(GetProgramText(kit, ProgramText::SameAsInputFolder), "Same as input folder");
    EXPECT_EQ(GetProgramText(kit, ProgramText::SameAsInputFile), "");
    EXPECT_EQ(GetProgramText(kit, ProgramText::SameAsInputFiles), "~~");
    EXPECT_EQ(GetProgramText(kit, ProgramText::NoMatch), "");
}

TEST(ProgramText, IsShippedForEveryNumberInUse) {
    std::ifstream file(PROGRAM_TEXTS, std::ios::binary);
    const std::string content(std::istreambuf_iterator<char>(file), {});
    ProgramTextTable texts;
    ASSERT_EQ(ParseProgramTexts(content, texts), TextFileResult{});
    EXPECT_EQ(texts.size(), 6U);
    EXPECT_EQ(texts[18], "Same as input folder");
    EXPECT_EQ(texts[47], "Same as input file");
    EXPECT_EQ(texts[48], "Same as input files");
    EXPECT_EQ(texts[50], "The output file is the same as the input file.");
    EXPECT_EQ(texts[51], "No files in the input folder or its subfolders match the file pattern.");
    EXPECT_EQ(texts[52], "No files in the input folder match the file pattern.");
}

TEST_F(KitTest, FetchesTexts) {
    using enum TextFileStatus;
    EXPECT_FALSE(kit->gt(47));
    EXPECT_EQ(kit->lt(folder / "none").status, NotOpened);
    const std::string path = folder.Write("texts", "# text\n47 Same\\nas\\\\n\r\n");
    EXPECT_EQ(kit->lt(path).status, Loaded);
    EXPECT_FALSE(kit->gt(48));
    disk.Fail(FsCall::Read, 1);
    EXPECT_EQ(kit->lt(path).status, NotRead);
    for (const auto& [content, result] :
         {std::pair{"1 x\n" + std::string(1U << 20U, '#'), TextFileResult{TooMuchText}},
          {"1 " + std::string(1024, 'x'), {StringTooLong, 1}},
          {"1 one\n2 two\n1 again\n", {Duplicate, 3}},
          {"1 one\n\n#\n2\n", {MissingString, 4}},
          {"1 \xFF\n", {NotRecovered}}}) {
        folder.Write("texts", content);
        EXPECT_EQ(kit->lt(path), result);
        EXPECT_EQ(kit->gt(47), "Same\r\nas\\n") << "a failure keeps texts";
    }
}

} // namespace
} // namespace zr5::test
