#include "util/paths.h"

#include <gtest/gtest.h>

namespace zr5 {
namespace {

TEST(PathSplit, FollowsTheShapeOfThePath) {
    const struct {
        std::string_view path, folder, name, extension;
    } cases[] = {{"/home/a/B.TXT", "/home/a/", "B.TXT", "txt"},
                 {"/a.b/c", "/a.b/", "c", ""},
                 {"/x", "/", "x", ""},
                 {"/home/a/", "/home/a/", "", ""},
                 {"/d/back\\slash.x", "/d/", "back\\slash.x", "x"},
                 {"/d/.bashrc", "/d/", ".bashrc", "bashrc"},
                 {"/d/a.tar.GZ", "/d/", "a.tar.GZ", "gz"},
                 {"/d/ends.", "/d/", "ends.", ""},
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

TEST(PathShape, IsToldByTheFirstCharacters) {
    for (const auto* path : {"C:", "z:\\x", "C:x", "\\\\server"})
        EXPECT_TRUE(IsWindowsShaped(path)) << path;
    for (const auto* path : {"", "C", "/c:/x", "1:\\x", "\\x", "é:\\"})
        EXPECT_FALSE(IsWindowsShaped(path)) << path;
}

TEST(FolderPath, EndsInTheSeparatorOfItsShape) {
    EXPECT_EQ(WithTrailingSeparator("C:"), "C:\\");
    EXPECT_EQ(WithTrailingSeparator("C:\\x\\"), "C:\\x\\");
    EXPECT_EQ(WithTrailingSeparator("/home"), "/home/");
    EXPECT_EQ(WithTrailingSeparator("/"), "/");
    EXPECT_EQ(WithTrailingSeparator("/odd\\"), "/odd\\/");
    EXPECT_EQ(WithTrailingSeparator(""), "");
}

TEST(NameSplit, TellsAnEmptyExtensionFromNone) {
    EXPECT_TRUE(SplitName("a.").hasDot);
    EXPECT_FALSE(SplitName("a").hasDot);
    EXPECT_EQ(SplitName("a.b.c").base, "a.b");
}

TEST(NameCharacters, AreForbiddenOneByOne) {
    for (const char c : std::string_view("\\/:<>|\"")) {
        const std::string name = std::string("a") + c + "b";
        EXPECT_TRUE(HasForbiddenCharacter(name, Wildcards::Allowed)) << name;
        EXPECT_TRUE(HasForbiddenCharacter(name, Wildcards::Refused)) << name;
    }
    for (const auto* name : {"*.t", "a?"}) {
        EXPECT_FALSE(HasForbiddenCharacter(name, Wildcards::Allowed)) << name;
        EXPECT_TRUE(HasForbiddenCharacter(name, Wildcards::Refused)) << name;
    }
    EXPECT_FALSE(HasForbiddenCharacter("a b'é.txt", Wildcards::Refused));
}

} // namespace
} // namespace zr5
