#include "util/program_text.h"

#include "libs/filekit/kit_fixture.h"
#include "libs/filekit/program_text_file.h"
#include "support/fakes.h"
#include "support/scripted_user.h"
#include "util/language_lists.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <gtest/gtest.h>

namespace zr5::test {
namespace {

/// A kit whose `gt` fills the buffer beyond the text and checks how it is called.
class TextKit final : public FakeKit {
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

TEST(ProgramTextLoading, TellsWhyItFailed) {
    for (const auto& [code, message] :
         {std::pair{0, "No program text was read."},
          {-1, "Cannot open file containing program text.\r\n/opt/zr5/zr5e.dat"},
          {-501, "Missing string at line 1."},
          {-1500, "String too long at line 500."},
          {-1501, "Duplicate in program text at line 1."}}) {
        TextKit kit;
        kit.loadResult = code;
        ScriptedUser user;
        user.Expect(Notice(message, "Program text", BoxIcon::Critical));
        LoadProgramText(kit, user, "/opt/zr5", "zr5e.dat");
    }
    TextKit kit; // says nothing
    ScriptedUser user;
    LoadProgramText(kit, user, "C:\\Programs\\", "zr5e.dat");
    EXPECT_EQ(kit.loaded, std::vector<std::string>{"C:\\Programs\\zr5e.dat"});
}

TEST(ProgramText, IsAsLongAsTheKitSays) {
    TextKit kit;
    kit.texts = {{1, "Same as input folder"}, {2, "~"}, {3, "~~"}, {4, std::string(1024, 'x')}};
    EXPECT_EQ(GetProgramText(kit, 1), "Same as input folder");
    EXPECT_EQ(GetProgramText(kit, 2), "");
    EXPECT_EQ(GetProgramText(kit, 3), "~~");
    EXPECT_EQ(GetProgramText(kit, 4), std::string(1024, 'x'));
    EXPECT_EQ(GetProgramText(kit, 5), "");
}

TEST(ProgramText, IsShippedForEveryNumberInUse) {
    std::ifstream file(PROGRAM_TEXTS, std::ios::binary);
    const std::string content(std::istreambuf_iterator<char>(file), {});
    ProgramTextTable texts;
    ASSERT_EQ(ParseProgramTexts(content, texts), 6);
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
