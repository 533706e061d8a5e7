#include "libs/system/file_system.h"
#include "libs/system/paths.h"
#include "libs/system/safe_file.h"

#include "libs/cipher/engine_fixture.h"
#include "support/child_process.h"
#include "support/fixtures.h"
#include "support/mounted_disk.h"

#include <array>
#include <filesystem>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace zr5::test {
namespace {

namespace fs = std::filesystem;

using SystemFiles = KitTest;

TEST_F(SystemFiles, RenamingNeverReplacesWhateverHoldsTheName) {
    folder.Write("file", "kept");
    folder.MakeSpecials("file");
    folder.Write("from", "moved");
    const auto names = folder.Names();
    for (const char* name : {"file", "folder", "link", "dangling", "pipe"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(system->RenameWithoutReplacing(folder / "from", folder / name),
                  FsStatus::AlreadyExists);
        EXPECT_EQ(system->CreateExclusively(folder / name).status, FsStatus::AlreadyExists);
        EXPECT_EQ(folder.Names(), names);
    }
    EXPECT_EQ(folder.Read("file"), "kept");
    EXPECT_EQ(system->RenameWithoutReplacing(folder / "from", folder / "free"), FsStatus::Ok);
    EXPECT_EQ(folder.Read("free"), "moved");
    EXPECT_EQ(system->RenameWithoutReplacing(folder / "from", folder / "x"), FsStatus::NotFound);
}

TEST_F(SystemFiles, HaveOneIdentityUnderAllTheirNames) {
    folder.Write("file", "");
    folder.Write("other", "");
    fs::create_directory(folder / "below");
    fs::create_hard_link(folder / "file", folder / "hard");
    fs::create_symlink(folder / "file", folder / "soft");
    fs::create_directory_symlink(folder.Path(), folder / "below/up");
    using Row = std::tuple<std::string, std::string, bool>;
    const std::string file = folder / "file";
    for (const auto& [a, b, same] :
         {Row{file, folder / "hard", true}, Row{file, folder / "soft", true},
          Row{file, folder / "below/up/./file", true}, Row{file, folder / "other", false},
          Row{file, folder / "FILE", false}, Row{file, folder / "none", false},
          Row{folder / "none", folder / "./none", true}, // neither is there
          Row{folder / "none", folder / "nine", false},
          Row{"C:\\Text\\\xC3\x84.TXT", "c:\\text\\\xC3\xA4.txt", true},
          Row{"C:\\a.txt", "D:\\a.txt", false}, Row{"\\\\Server\\a", "\\\\SERVER\\A", true},
          Row{"C:\\a\xFF", "c:\\A\xFF", true}, Row{"C:\\a", file, false}}) {
        SCOPED_TRACE(a + " and " + b);
        EXPECT_EQ(SameFile(*system, a, b), same);
        EXPECT_EQ(SameFile(*system, b, a), same);
    }
}

class SafeFile : public KitTest {
  protected:
    FsStatus Write(IfThere ifThere) {
        return WriteSafely(disk, random, folder / "f", std::as_bytes(std::span(content)), ifThere);
    }
    const std::string content = PatternBytes(64);
};

TEST_F(SafeFile, IsItsOwnersOnlyAndReplacesNothingUnlessItMay) {
    EXPECT_EQ(Write(IfThere::Refuse), FsStatus::Ok);
    EXPECT_EQ(folder.Read("f"), content);
    EXPECT_EQ(std::filesystem::status(folder / "f").permissions(), std::filesystem::perms(0600));
    folder.Write("f", "other");
    EXPECT_EQ(Write(IfThere::Refuse), FsStatus::AlreadyExists);
    disk.Before(FsCall::Flush, 1, [&] { folder.Remove("f"); });
    EXPECT_EQ(Write(IfThere::Replace), FsStatus::Ok) << "a file that vanished meanwhile";
    folder.Remove("f");
    disk.Before(FsCall::Rename, 1, [&] { folder.Write("f", "newcomer"); });
    EXPECT_NE(Write(IfThere::Refuse), FsStatus::Ok);
    EXPECT_EQ(folder.Read("f"), "newcomer");
    EXPECT_EQ(folder.Names(), std::set<std::string>{"f"});
}

TEST_F(SafeFile, LeavesTheOldFileOrNothingWhicheverCallFails) {
    for (const bool replaces : {false, true}) {
        for (unsigned call = 1;; ++call) {
            folder.Empty();
            if (replaces) folder.Write("f", "old");
            disk.Reset();
            disk.FailAny(call, FsStatus::NoSpace);
            const FsStatus status = Write(IfThere::Replace);
            if (!disk.AllMet()) break;
            if (status == FsStatus::Ok) continue; // a call without consequence
            const bool named = disk.Calls().back() == FsCall::FlushFolder;
            EXPECT_EQ(folder.Has("f") ? folder.Read("f") : "",
                      !replaces ? "" : (named ? content : "old"))
                << call;
            EXPECT_EQ(folder.Names().size(), replaces ? 1U : 0U) << call;
        }
    }
    EXPECT_LT(std::ranges::find(disk.Calls(), FsCall::Flush),
              std::ranges::find(disk.Calls(), FsCall::Write))
        << "the file may vanish, and not that";
    disk.Reset();
    disk.Fail(FsCall::Write, 1, FsStatus::NoSpace);
    EXPECT_EQ(Write(IfThere::Replace), FsStatus::NoSpace);
}

using enum EngineResult;

struct stat StatOf(const std::string& path) {
    struct stat raw {};
    EXPECT_EQ(lstat(path.c_str(), &raw), 0);
    return raw;
}
unsigned ModeOf(const std::string& path) {
    return StatOf(path).st_mode & 07777U;
}

std::string AttributeOf(const std::string& path, const char* name) {
    std::array<char, 256> value{};
    const ssize_t length = getxattr(path.c_str(), name, value.data(), value.size());
    return length < 0 ? "(none)" : std::string(value.data(), static_cast<std::size_t>(length));
}

/// Says that an output stands for its source, or may replace what was there.
struct Observer final : OutputObserver {
    bool isInPlace = true;
    bool MayReplace(const FileInfo& /*existing*/) override { return true; }
    [[nodiscard]] bool StandsForSource() const override { return isInPlace; }
    bool WillMake(const std::string& /*partPath*/) override { return true; }
    void HasMade() override {}
    bool WillName(const FileInfo& /*info*/, const std::string& /*path*/) override { return true; }
    void IsTooLarge() override {}
};

class Attributes : public EngineTest {
  protected:
    /// `plain` becomes `sealed`, and that `back`, as in place.
    void GoThroughBoth() {
        Engine().operation_initialization(Key, Direction::Encrypt);
        const EngineHooks hooks{.observer = &observer};
        ASSERT_EQ(Engine().encrypt_file(folder / "plain", folder / "sealed", hooks), Success);
        Engine().operation_initialization(Key, Direction::Decrypt);
        ASSERT_EQ(Engine().decrypt_file(folder / "sealed", folder / "back", hooks), Success);
    }
    Observer observer;
};

TEST_F(Attributes, ModeAndExtendedOnesGoThroughBothDirections) {
    for (const unsigned mode : {0600U, 0644U, 0400U, 0755U, 0440U, 04755U}) {
        SCOPED_TRACE(testing::Message() << std::oct << mode);
        const std::string plain = folder.Write("plain", "content");
        ASSERT_EQ(chmod(plain.c_str(), mode), 0);
        ASSERT_EQ(setxattr(plain.c_str(), "user.origin", "somewhere", 9, 0), 0)
            << "tests need a temporary folder whose file system knows extended attributes";
        ASSERT_EQ(setxattr(plain.c_str(), "user.empty", "", 0, 0), 0);
        GoThroughBoth();
        for (const char* name : {"sealed", "back"}) {
            EXPECT_EQ(ModeOf(folder / name), mode);
            EXPECT_EQ(AttributeOf(folder / name, "user.origin"), "somewhere");
            EXPECT_EQ(AttributeOf(folder / name, "user.empty"), "");
        }
        folder.Empty();
    }
}

TEST_F(Attributes, AccessListsGoThroughBothDirections) {
    constexpr const char* Name = "system.posix_acl_access";
    // As the file system keeps it: a version; then tag, permissions, user or group of each entry:
    // the owner reads and writes, user 12345 reads, the group nothing, at most reading, others
    // nothing.
    const std::string list(
        "\2\0\0\0\1\0\6\0\xFF\xFF\xFF\xFF\2\0\4\0\x39\x30\0\0\4\0\0\0\xFF\xFF\xFF\xFF"
        "\x10\0\4\0\xFF\xFF\xFF\xFF\x20\0\0\0\xFF\xFF\xFF\xFF",
        44);
    const std::string plain = folder.Write("plain", "content");
    if (setxattr(plain.c_str(), Name, list.data(), list.size(), 0) != 0)
        GTEST_SKIP() << "the temporary folder's file system has no access lists";
    GoThroughBoth();
    EXPECT_EQ(AttributeOf(folder / "sealed", Name), list);
    EXPECT_EQ(AttributeOf(folder / "back", Name), list);

    // Without the list its mask would be the group's.
    const MountedDisk noLists("ramfs", "");
    if (noLists.IsMounted()) {
        EXPECT_EQ(EncryptPath(plain, noLists.folder / "sealed"), Success);
        EXPECT_EQ(ModeOf(noLists.folder / "sealed"), 0600U);
    }

    // What a folder gives to new files must not make the result readable for more people.
    ASSERT_EQ(
        setxattr(folder.Path().c_str(), "system.posix_acl_default", list.data(), list.size(), 0),
        0);
    removexattr(plain.c_str(), Name);
    ASSERT_EQ(Encrypt("plain", "private"), Success);
    EXPECT_EQ(AttributeOf(folder / "private", Name), AttributeOf(plain, Name));
}

TEST_F(Attributes, OfAnotherFileAreNoWiderThanItsPlaceAllows) {
    const std::string plain = folder.Write("plain", "content");
    const mode_t mask = umask(0077);
    for (const auto& [source, there, result] :
         {std::tuple{0644U, 0U, 0600U}, std::tuple{0644U, 0600U, 0600U},
          std::tuple{0600U, 0640U, 0640U}, std::tuple{04755U, 0U, 0700U}}) {
        SCOPED_TRACE(testing::Message() << std::oct << source << " over " << there);
        folder.Remove("out");
        ASSERT_EQ(chmod(plain.c_str(), source), 0);
        if (there != 0) {
            ASSERT_EQ(chmod(folder.Write("out", "old").c_str(), there), 0);
            setxattr((folder / "out").c_str(), "user.origin", "its own", 7, 0);
        }
        ASSERT_EQ(Encrypt("plain", "out"), Success);
        EXPECT_EQ(ModeOf(folder / "out"), result);
        EXPECT_EQ(AttributeOf(folder / "out", "user.origin"), there != 0 ? "its own" : "(none)");
    }
    umask(mask);
}

TEST_F(Attributes, NobodyElseReadsTheResultBeforeItIsDone) {
    const std::string plain = folder.Write("plain", PatternBytes(200'000));
    ASSERT_EQ(chmod(plain.c_str(), 0666), 0);
    ASSERT_EQ(Encrypt("plain", "sealed"), Success);
    for (const FsCall moment : {FsCall::Write, FsCall::CopyAttributes}) {
        Disk().Reset();
        bool seen = false;
        Disk().Before(moment, 1, [&] {
            for (const std::string& name : folder.Names()) {
                if (name == "plain" || name == "sealed") continue;
                EXPECT_EQ(ModeOf(folder / name), 0600U);
                seen = true;
            }
        });
        ASSERT_EQ(Decrypt("sealed", "back"), Success);
        EXPECT_TRUE(seen);
        folder.Remove("back");
    }
}

TEST_F(Attributes, AnotherOwnersRightsAreNotLentToWhatIsOurs) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root, to act as two users";
    const std::string plain = folder.Write("plain", "content");
    ASSERT_EQ(chmod(plain.c_str(), 06754), 0);
    ASSERT_EQ(chmod(folder.Path().c_str(), 0777), 0);
    EXPECT_TRUE(AsOrdinaryUser({}, [&] {
        GoThroughBoth();
        return folder.Has("back");
    }));
    EXPECT_EQ(StatOf(folder / "sealed").st_uid, 65534U);
    EXPECT_EQ(ModeOf(folder / "sealed"), 0744U)
        << "neither set-id bits for the wrong user nor rights of one group for another";
}

TEST_F(Attributes, AFileOrFolderWithoutPermissionIsSaid) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root, to act as two users";
    folder.Write("secret", "content");
    folder.Write("open", Sealed("content"));
    ASSERT_EQ(chmod((folder / "secret").c_str(), 0600), 0);
    ASSERT_EQ(chmod(folder.Path().c_str(), 0755), 0);
    std::filesystem::create_directory(folder / "theirs");
    ASSERT_EQ(chmod((folder / "theirs").c_str(), 0777), 0);
    EXPECT_TRUE(AsOrdinaryUser({}, [&] {
        return Encrypt("secret", "theirs/out") == InputNotOpened &&
               Encrypt("open", "out") == OutputNotOpened &&
               Decrypt("open", "secret") == OutputNotOpened &&
               Decrypt("open", "theirs/out") == Success;
    }));
    EXPECT_EQ(folder.Read("secret"), "content");
    EXPECT_EQ(folder.Names(), (std::set<std::string>{"secret", "open", "theirs"}));
}

} // namespace
} // namespace zr5::test
