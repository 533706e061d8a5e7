#include "files/file_pattern.h"

#include <gtest/gtest.h>
#include <string>

namespace zr5 {
namespace {

TEST(FilePattern, DecidesByBaseAndExtension) {
    const struct {
        std::string_view name, pattern;
        bool matches;
    } cases[] = {{"notes.txt", "*.txt", true},
                 {"notes.txt", "*.TXT", false},
                 {"notes", "*.txt", false},
                 {"notes", "*.*", true},
                 {"what?", "*.*", true},
                 {"what?", "*", true},
                 {"a:b.txt", "*.txt", false},
                 {"a?b.txt", "*.txt", false},
                 {"a*b.txt", "*.txt", false},
                 {"a\\b.txt", "*.txt", false},
                 {"report1.txt", "report?.txt", true},
                 {"report.txt", "report?.txt", false},
                 {"report12.txt", "report?.txt", false},
                 {"report\xC3\xA9.txt", "report?.txt", true},
                 {"report\xFF.txt", "report?.txt", true},
                 {"report\xFFz.txt", "report?.txt", false},
                 {"report\xFF.txt", "report\xFE.txt", false},
                 {"aXbYc.dZ", "a*b*c.d?", true},
                 {"aXbY.dZ", "a*b*c.d?", false},
                 {"abcbc.d1", "a*b*c.d?", true},
                 {"noext", "noext", true},
                 {"noext.txt", "noext", true},
                 {"noext.a.b", "noext", false},
                 {"anything.at.all", "*", true},
                 {"plain", "*.", true},
                 {"plain.", "*.", true},
                 {"plain.t", "*.", false},
                 {".bashrc", ".*", true},
                 {"a.bashrc", ".*", false},
                 {"a.tar.gz", "*.gz", true},
                 {"a.tar.gz", "a.*", false},
                 {"a.tar.gz", "a.tar.*", true},
                 {" a.txt ", "a.txt", true},
                 {"a.txt", " a.txt ", true}};
    for (const auto& [name, pattern, matches] : cases)
        EXPECT_EQ(MatchesPattern(name, pattern), matches) << name << " against " << pattern;
}

TEST(LongPattern, IsDecidedWithoutTryingEverything) {
    std::string pattern;
    for (int i = 0; i < 100; ++i)
        pattern += "a*";
    EXPECT_FALSE(MatchesPattern(std::string(250, 'a') + ".b", pattern + "x.b"));
    EXPECT_TRUE(MatchesPattern(std::string(250, 'a') + ".b", pattern + ".b"));
}

} // namespace
} // namespace zr5
