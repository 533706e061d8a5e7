#include "files/file_pattern.h"

#include <gtest/gtest.h>
#include <string>

namespace zr5 {
namespace {

struct PatternCase {
    std::string_view name, pattern;
    bool matches;
};
class FilePattern : public testing::TestWithParam<PatternCase> {};

TEST_P(FilePattern, DecidesByBaseAndExtension) {
    const auto& [name, pattern, matches] = GetParam();
    EXPECT_EQ(MatchesPattern(name, pattern), matches) << name << " against " << pattern;
}

INSTANTIATE_TEST_SUITE_P(
    Names, FilePattern,
    testing::Values(PatternCase{"notes.txt", "*.txt", true},
                    PatternCase{"notes.txt", "*.TXT", false}, PatternCase{"notes", "*.txt", false},
                    PatternCase{"notes", "*.*", true}, PatternCase{"what?", "*.*", true},
                    PatternCase{"what?", "*", true}, PatternCase{"a:b.txt", "*.txt", false},
                    PatternCase{"report1.txt", "report?.txt", true},
                    PatternCase{"report.txt", "report?.txt", false},
                    PatternCase{"report12.txt", "report?.txt", false},
                    PatternCase{"report\xC3\xA9.txt", "report?.txt", true},
                    PatternCase{"report\xFF.txt", "report?.txt", true},
                    PatternCase{"aXbYc.dZ", "a*b*c.d?", true},
                    PatternCase{"aXbY.dZ", "a*b*c.d?", false},
                    PatternCase{"abcbc.d1", "a*b*c.d?", true}));
INSTANTIATE_TEST_SUITE_P(
    DotsAndBlanks, FilePattern,
    testing::Values(PatternCase{"noext", "noext", true}, PatternCase{"noext.txt", "noext", true},
                    PatternCase{"noext.a.b", "noext", false},
                    PatternCase{"anything.at.all", "*", true}, PatternCase{"plain", "*.", true},
                    PatternCase{"plain.", "*.", true}, PatternCase{"plain.t", "*.", false},
                    PatternCase{".bashrc", ".*", true}, PatternCase{"a.bashrc", ".*", false},
                    PatternCase{"a.tar.gz", "*.gz", true}, PatternCase{"a.tar.gz", "a.*", false},
                    PatternCase{"a.tar.gz", "a.tar.*", true}, PatternCase{" a.txt ", "a.txt", true},
                    PatternCase{"a.txt", " a.txt ", true}));

TEST(LongPattern, IsDecidedWithoutTryingEverything) {
    std::string pattern;
    for (int i = 0; i < 100; ++i) {
        pattern += "a*";
    }
    EXPECT_FALSE(MatchesPattern(std::string(250, 'a') + ".b", pattern + "x.b"));
    EXPECT_TRUE(MatchesPattern(std::string(250, 'a') + ".b", pattern + ".b"));
}

} // namespace
} // namespace zr5
