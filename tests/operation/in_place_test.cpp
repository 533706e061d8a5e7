// What is at stake here: at every moment, whatever fails, a complete original or a complete
// encrypted copy is on the disk, and nothing is left lying about that the report does not name.

#include "operation/in_place.h"

#include "operation/file_ops.h"
#include "operation/in_place_fixture.h"

#include <filesystem>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace zr5::test {
namespace {

TEST_F(InPlace, GivesTheSameFileBackUnderItsName) {
    const std::string original = PatternBytes(70'000);
    for (const std::string& name :
         {std::string("plain.odt"), std::string(" a'b\"\n\xFF "), std::string(255, 'n')}) {
        folder.Write(name, original);
        for (const Function function : {Function::Encrypt, Function::Decrypt}) {
            ASSERT_EQ(Process(function, name).outcome, 0) << name;
            EXPECT_EQ(folder.Read(name) == original, function == Function::Decrypt);
            EXPECT_EQ(folder.Names(), Names{name});
        }
        folder.Empty();
    }
}

TEST_F(InPlace, KeepsModeAndExtendedAttributes) {
    const std::string path = folder.Write("a", "content");
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    ASSERT_EQ(setxattr(path.c_str(), "user.note", "kept", 4, 0), 0);
    for (const Function function : {Function::Encrypt, Function::Decrypt}) {
        ASSERT_EQ(Process(function, "a").outcome, 0);
        struct stat info {};
        ASSERT_EQ(stat(path.c_str(), &info), 0);
        EXPECT_EQ(info.st_mode & 07777U, 0640U);
        std::array<char, 8> value{};
        EXPECT_EQ(getxattr(path.c_str(), "user.note", value.data(), value.size()), 4);
        EXPECT_STREQ(value.data(), "kept");
    }
}

TEST_F(InPlace, NeverOverwritesAFileThatHasOtherNames) {
    const std::string path = folder.Write("a", "shared content");
    std::filesystem::create_hard_link(path, folder / "b");
    const FileResult result = Process(Function::Encrypt, "a");
    EXPECT_EQ(result.outcome, outcome::NotRenamed);
    EXPECT_EQ(result.resultPath, folder / "a.zr5");
    EXPECT_EQ(folder.Read("a"), "shared content");
    EXPECT_EQ(folder.Read("b"), "shared content");
    EXPECT_EQ(Decrypted(folder / "a.zr5"), "shared content");
}

TEST_F(InPlace, LeavesAnInputAloneThatChangedMeanwhile) {
    folder.Write("a", "first");
    beforePurge = [this] { folder.Write("a", "second, by another program"); };
    EXPECT_EQ(Process(Function::Encrypt, "a").outcome, outcome::NotRenamed);
    EXPECT_EQ(folder.Read("a"), "second, by another program");

    folder.Empty();
    folder.Write("a", "first");
    beforePurge = [this] {
        folder.Remove("a");
        folder.Write("a", "first"); // the same bytes, but somebody else's file
    };
    EXPECT_EQ(Process(Function::Encrypt, "a").outcome, outcome::NotRenamed);
    EXPECT_EQ(folder.Read("a"), "first");
}

TEST_F(InPlace, ReplacesNothingThatAppearedUnderTheName) {
    folder.Write("a", "mine");
    Disk().Before(FsCall::Rename, 2, [this] { folder.Write("a", "theirs"); });
    const FileResult result = Process(Function::Encrypt, "a");
    EXPECT_EQ(result.outcome, outcome::NotRenamed);
    EXPECT_EQ(folder.Read("a"), "theirs");
    EXPECT_EQ(Decrypted(result.resultPath), "mine");
}

TEST_F(InPlace, KeepsWhatCouldBeSalvagedBesideTheInput) {
    const std::string original = PatternBytes(200'000);
    folder.Write("a", original);
    ASSERT_EQ(Process(Function::Encrypt, "a").outcome, 0);
    std::string damaged = folder.Read("a");
    damaged[100] = static_cast<char>(damaged[100] ^ 1);
    folder.Write("a", damaged);
    const FileResult result = Process(Function::Decrypt, "a");
    EXPECT_EQ(result.outcome, -21);
    EXPECT_EQ(result.resultPath, folder / "a.zr5");
    EXPECT_EQ(folder.Read("a"), damaged);
    EXPECT_EQ(folder.Read("a.zr5"), std::string(65'536, '\0') + original.substr(65'536));
}

} // namespace
} // namespace zr5::test
