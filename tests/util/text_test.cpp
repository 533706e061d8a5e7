// Texts: their letters, paths and durations in words, and the shipped ones.

#include "libs/filekit/program_text_file.h"
#include "support/fixtures.h"
#include "util/code_page.h"
#include "util/display.h"
#include "util/durations.h"
#include "util/paths.h"
#include "util/program_text.h"
#include "util/text.h"

#include <array>
#include <fstream>

namespace zr5::test {
namespace {

using namespace std::string_view_literals;

TEST(LowerCase, KnowsAccentsAndOtherAlphabetsAndKeepsWhatIsNoLetter) {
    EXPECT_EQ(LowerCaseWithAccents("ŠŸÀÁÂÃÄÅÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖØÙÚÛÜÝ"),
              "šÿàáâãäåçèéêëìíîïðñòóôõöøùúûüý");
    EXPECT_EQ(LowerCaseWithAccents("Über ÆÞŒŽ ß × 12 ΔЖ 💾"), "über æþœž ß × 12 δж 💾");
    EXPECT_EQ(LowerCaseWithAccents("A\303B\377\342\202C"), "a\303b\377\342\202c");
}

TEST(ShortenPath, KeepsThreeCharactersAndTheTailAndNeverSplitsOne) {
    const std::string thirty = "abcdefghijklmnopqrstuvwxyz0123";
    EXPECT_EQ(ShortenPath(thirty, 10), "abc...0123");
    EXPECT_EQ(ShortenPath(thirty, 29), "abc...hijklmnopqrstuvwxyz0123");
    for (const std::size_t width : {30U, 9U, 0U})
        EXPECT_EQ(ShortenPath(thirty, width), thirty);
    EXPECT_EQ(ShortenPath("ääääääääää", 10), "ääääääääää");
    EXPECT_EQ(ShortenPath("äöü€💾ßéèêëìí", 10), "äöü...êëìí");
    EXPECT_EQ(ShortenPath("\377\376\375defghij\374", 10), "\377\376\375...hij\374");
}

TEST(CodePage, TakesEveryByteToACharacterAndBack) {
    for (unsigned byte = 0; byte <= 0xFF; ++byte) {
        const char32_t character = CodePage1252Character(static_cast<std::uint8_t>(byte));
        EXPECT_EQ(CodePage1252Byte(character), byte);
        const std::string one(1, static_cast<char>(byte));
        EXPECT_EQ(ToCodePage1252(FromCodePage1252(one)), one) << byte;
    }
}

TEST(CodePage, CapitalisesOneByteToOneByte) {
    const auto small =
        ToCodePage1252("abcdefghijklmnopqrstuvwxyzšœžàáâãäåæçèéêëìíîïðñòóôõöøùúûüýþÿ");
    const auto capitals =
        ToCodePage1252("ABCDEFGHIJKLMNOPQRSTUVWXYZŠŒŽÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖØÙÚÛÜÝÞŸ");
    for (unsigned byte = 0; byte <= 0xFF; ++byte) {
        const auto character = static_cast<char>(byte);
        const std::size_t at = small->find(character);
        EXPECT_EQ(static_cast<char>(UpperCase1252(static_cast<std::uint8_t>(byte))),
                  at == std::string::npos ? character : capitals->at(at));
    }
}

TEST(Duration, ReadsAsAPersonWouldSayIt) {
    using Words = std::string_view;
    const std::tuple<std::uint64_t, Words, Words, Words, Words> cases[] = {
        {0, "0 seconds", "0 minutes", "0s", "0m"},
        {29, "29 seconds", "0 minutes", "29s", "0m"},
        {30, "30 seconds", "1 minute", "30s", "1m"},
        {60, "1 minute", "1 minute", "1m", "1m"},
        {150, "2 minutes and 30 seconds", "3 minutes", "2m 30s", "3m"},
        {3599, "59 minutes and 59 seconds", "1 hour", "59m 59s", "1h"},
        {3601, "1 hour and 1 second", "1 hour", "1h 1s", "1h"},
        {86399, "23 hours, 59 minutes and 59 seconds", "1 day", "23h59m 59s", "1d"},
        {86401, "1 day and 1 second", "1 day", "1d 1s", "1d"},
        {93784, "1 day, 2 hours, 3 minutes and 4 seconds", "1 day, 2 hours and 3 minutes",
         "1d 2h3m 4s", "1d 2h3m"},
        {172800, "2 days", "2 days", "2d", "2d"}};
    const auto rounding = DurationRounding::ToMinutes;
    for (const auto& [seconds, exact, rounded, compact, compactRounded] : cases) {
        EXPECT_EQ(FormatDuration(seconds), exact);
        EXPECT_EQ(FormatDuration(seconds, DurationForm::Long, rounding), rounded);
        EXPECT_EQ(FormatDuration(seconds, DurationForm::Compact), compact);
        EXPECT_EQ(FormatDuration(seconds, DurationForm::Compact, rounding), compactRounded);
    }
}

TEST(PathSplit, FollowsTheShapeOfThePath) {
    using Row = std::array<std::string_view, 4>;
    for (const auto& [path, folder, name, extension] :
         {Row{"/home/a/B.TXT", "/home/a/", "B.TXT", "txt"},
          {"/x", "/", "x", ""},
          {"/home/a/", "/home/a/", "", ""},
          {"/d/back\\slash.x", "/d/", "back\\slash.x", "x"},
          {"/d/.bashrc", "/d/", ".bashrc", "bashrc"},
          {"/d/a.tar.GZ", "/d/", "a.tar.GZ", "gz"},
          {"plain.É", "", "plain.É", "é"},
          {"", "", "", ""},
          {"C:\\My Files\\a.Opn", "C:\\My Files\\", "a.Opn", "opn"},
          {"c:/mixed\\b/c.d", "c:/mixed\\b/", "c.d", "d"},
          {"\\\\server\\share\\x.y\\z", "\\\\server\\share\\x.y\\", "z", ""}}) {
        const PathParts parts = SplitPath(path);
        EXPECT_EQ(parts.folder, folder);
        EXPECT_EQ(parts.name, name);
        EXPECT_EQ(ExtensionOf(path), extension);
    }
}

TEST(ShownName, HidesNothingAndLeadsBackToTheFile) {
    for (const auto& [name, shown] :
         {std::pair{"a\u200Bb\u00AD\uFEFF.txt"sv,
                    "a\\xE2\\x80\\x8Bb\\xC2\\xAD\\xEF\\xBB\\xBF.txt"sv},
          {"\u2060\u2064"sv, "\\xE2\\x81\\xA0\\xE2\\x81\\xA4"sv},
          {"cod\u202Egpj\n"sv, "cod\\xE2\\x80\\xAEgpj\\x0A"sv},
          {"\uFE0F\U000E0041\u3164"sv, "\\xEF\\xB8\\x8F\\xF3\\xA0\\x81\\x81\\xE3\\x85\\xA4"sv},
          {"caf\xE9 é\u00A0💾"sv, "caf\\xE9 é\u00A0💾"sv}}) {
        EXPECT_EQ(DisplayName(name), shown);
        EXPECT_EQ(NameFromDisplay(shown), name);
    }
}

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
