#include "util/text.h"

#include "util/code_page.h"
#include "util/display.h"
#include "util/durations.h"
#include "util/paths.h"

#include <gtest/gtest.h>

namespace zr5 {
namespace {

using namespace std::string_view_literals;

TEST(LowerCase, KnowsAccentsAndOtherAlphabetsAndKeepsWhatIsNoLetter) {
    EXPECT_EQ(LowerCaseWithAccents("ŠŸÀÁÂÃÄÅÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖØÙÚÛÜÝ"),
              "šÿàáâãäåçèéêëìíîïðñòóôõöøùúûüý");
    EXPECT_EQ(LowerCaseWithAccents("Über ÆÞŒŽ ß × 12 ΔЖ 💾"), "über æþœž ß × 12 δж 💾");
    EXPECT_EQ(LowerCaseWithAccents("A\xC3"
                                   "B\xFF\xE2\x82"
                                   "C"),
              "a\xC3"
              "b\xFF\xE2\x82"
              "c");
}

TEST(ShortenPath, KeepsThreeCharactersAndTheTailAndNeverSplitsOne) {
    const std::string thirty = "abcdefghijklmnopqrstuvwxyz0123";
    EXPECT_EQ(ShortenPath(thirty, 10), "abc...0123");
    EXPECT_EQ(ShortenPath(thirty, 29), "abc...hijklmnopqrstuvwxyz0123");
    for (const std::size_t width : {30U, 9U, 0U})
        EXPECT_EQ(ShortenPath(thirty, width), thirty);
    EXPECT_EQ(ShortenPath("ääääääääää", 10), "ääääääääää");
    EXPECT_EQ(ShortenPath("äöü€💾ßéèêëìí", 10), "äöü...êëìí");
    EXPECT_EQ(ShortenPath("\xFF\xFE\xFD"
                          "defghij\xFC",
                          10),
              "\xFF\xFE\xFD...hij\xFC");
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
    const struct {
        std::uint64_t seconds;
        std::string_view exact, rounded, compact, compactRounded;
    } cases[] = {{0, "0 seconds", "0 minutes", "0s", "0m"},
                 {1, "1 second", "0 minutes", "1s", "0m"},
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
    for (const auto& c : cases) {
        EXPECT_EQ(FormatDuration(c.seconds), c.exact);
        EXPECT_EQ(FormatDuration(c.seconds, DurationForm::Long, rounding), c.rounded);
        EXPECT_EQ(FormatDuration(c.seconds, DurationForm::Compact), c.compact);
        EXPECT_EQ(FormatDuration(c.seconds, DurationForm::Compact, rounding), c.compactRounded);
    }
}

TEST(PathSplit, FollowsTheShapeOfThePath) {
    const struct {
        std::string_view path, folder, name, extension;
    } cases[] = {{"/home/a/B.TXT", "/home/a/", "B.TXT", "txt"},
                 {"/x", "/", "x", ""},
                 {"/home/a/", "/home/a/", "", ""},
                 {"/d/back\\slash.x", "/d/", "back\\slash.x", "x"},
                 {"/d/.bashrc", "/d/", ".bashrc", "bashrc"},
                 {"/d/a.tar.GZ", "/d/", "a.tar.GZ", "gz"},
                 {"plain.É", "", "plain.É", "é"},
                 {"", "", "", ""},
                 {"C:\\My Files\\a.Opn", "C:\\My Files\\", "a.Opn", "opn"},
                 {"c:/mixed\\b/c.d", "c:/mixed\\b/", "c.d", "d"},
                 {"\\\\server\\share\\x.y\\z", "\\\\server\\share\\x.y\\", "z", ""}};
    for (const auto& [path, folder, name, extension] : cases) {
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

} // namespace
} // namespace zr5
