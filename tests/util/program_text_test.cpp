#include "util/program_text.h"

#include "libs/program_text_file.h"
#include "support/fakes.h"
#include "support/scripted_user.h"
#include "util/language_lists.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace zr5 {
namespace {

using test::ScriptedUser;

/// A kit whose `gt` fills the buffer beyond the text and checks how it is called.
class TextKit final : public test::FakeKit {
  public:
    std::int32_t gt(std::int16_t number, std::int16_t language, std::span<char> buffer,
                    std::int32_t bufferLength, std::int32_t one) override {
        EXPECT_EQ(language, 0);
        EXPECT_EQ(bufferLength, 1024);
        EXPECT_EQ(buffer.size(), 1024U);
        EXPECT_EQ(one, 1);
        std::ranges::fill(buffer, '#');
        return FakeKit::gt(number, language, buffer, bufferLength, one);
    }
};

std::string ShippedTexts() {
    const auto here = std::filesystem::path(__FILE__).parent_path();
    std::ifstream file(here / "../../src/app/zr5e.dat", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct FailureCase {
    std::int32_t code;
    std::string_view message;
};
class ProgramTextLoading : public testing::TestWithParam<FailureCase> {};

TEST_P(ProgramTextLoading, TellsWhyItFailed) {
    TextKit kit;
    kit.loadResult = GetParam().code;
    ScriptedUser user;
    user.Expect(Notice(std::string(GetParam().message), "Program text", BoxIcon::Critical));
    LoadProgramText(kit, user, "/opt/zr5", "zr5e.dat");
}

INSTANTIATE_TEST_SUITE_P(
    Codes, ProgramTextLoading,
    testing::Values(FailureCase{0, "No program text was read."},
                    FailureCase{-1,
                                "Cannot open file containing program text.\r\n/opt/zr5/zr5e.dat"},
                    FailureCase{-2, "Particular memory allocation error."},
                    FailureCase{-3, "Too much program text."},
                    FailureCase{-4, "Text not recovered."}, FailureCase{-5, "Error -5"},
                    FailureCase{-6, "File is empty."}, FailureCase{-7, "Error reading file."},
                    FailureCase{-8, "General memory allocation error."},
                    FailureCase{-9, "Error -9"}, FailureCase{-500, "Error -500"},
                    FailureCase{-501, "Missing string at line 1."},
                    FailureCase{-1000, "Missing string at line 500."},
                    FailureCase{-1001, "String too long at line 1."},
                    FailureCase{-1500, "String too long at line 500."},
                    FailureCase{-1501, "Duplicate in program text at line 1."},
                    FailureCase{-1999, "Duplicate in program text at line 499."},
                    FailureCase{INT32_MIN, "Duplicate in program text at line 2147482148."}));

TEST(ProgramTextLoading, SaysNothingWhenItSucceeds) {
    TextKit kit;
    ScriptedUser user;
    LoadProgramText(kit, user, "C:\\Programs\\", "zr5e.dat");
    EXPECT_EQ(kit.loaded, std::vector<std::string>{"C:\\Programs\\zr5e.dat"});
    EXPECT_TRUE(user.asked.empty());
}

TEST(ProgramText, IsAsLongAsTheKitSays) {
    TextKit kit;
    kit.texts = {
        {1, "Same as input folder"}, {2, "~"}, {3, "~~"}, {4, ""}, {5, std::string(1024, 'x')}};
    EXPECT_EQ(GetProgramText(kit, 1), "Same as input folder");
    EXPECT_EQ(GetProgramText(kit, 2), "");
    EXPECT_EQ(GetProgramText(kit, 3), "~~");
    EXPECT_EQ(GetProgramText(kit, 4), "");
    EXPECT_EQ(GetProgramText(kit, 5), std::string(1024, 'x'));
    EXPECT_EQ(GetProgramText(kit, 6), "");
}

TEST(ProgramText, IsShippedForEveryNumberInUse) {
    ProgramTextTable texts;
    ASSERT_EQ(ParseProgramTexts(ShippedTexts(), texts), 6);
    EXPECT_EQ(texts[18], "Same as input folder");
    EXPECT_EQ(texts[47], "Same as input file");
    EXPECT_EQ(texts[48], "Same as input files");
    EXPECT_EQ(texts[50], "The output file is the same as the input file.");
    EXPECT_EQ(texts[51], "No files in the input folder or its subfolders match the file pattern.");
    EXPECT_EQ(texts[52], "No files in the input folder match the file pattern.");
}

TEST(LanguageLists, HaveStopWordsForOneProgramOnly) {
    EXPECT_EQ(LanguageListsFor("FAREBEV").stopWordFiles[6], "stwds_en_de_es_pt_it_fr.txt");
    EXPECT_EQ(LanguageListsFor("farebev").stopWordFiles, LanguageList{});
    const LanguageLists lists = LanguageListsFor("zr5e");
    EXPECT_EQ(lists.names[1], "German");
    EXPECT_EQ(lists.commonWordFiles[1], "cwds_de.txt");
}

} // namespace
} // namespace zr5
