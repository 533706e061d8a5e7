#include "libs/file_system.h"
#include "support/temporary_folder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace zr5::test {
namespace {

namespace fs = std::filesystem;

class SystemFiles : public testing::Test {
  protected:
    std::unique_ptr<FileSystem> disk = MakeSystemFileSystem();
    TemporaryFolder folder;
};

TEST_F(SystemFiles, RenamingNeverReplacesWhateverHoldsTheName) {
    folder.Write("file", "kept");
    fs::create_directory(folder / "folder");
    fs::create_symlink(folder / "file", folder / "link");
    fs::create_symlink(folder / "nowhere", folder / "dangling");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    folder.Write("from", "moved");
    const auto names = folder.Names();
    for (const char* name : {"file", "folder", "link", "dangling", "pipe"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(disk->RenameWithoutReplacing(folder / "from", folder / name),
                  FsStatus::AlreadyExists);
        EXPECT_EQ(folder.Names(), names);
    }
    EXPECT_EQ(folder.Read("file"), "kept");
    EXPECT_EQ(disk->RenameWithoutReplacing(folder / "from", folder / "free"), FsStatus::Ok);
    EXPECT_EQ(folder.Read("free"), "moved");
    EXPECT_EQ(disk->RenameWithoutReplacing(folder / "from", folder / "x"), FsStatus::NotFound);
}

TEST_F(SystemFiles, OpenOnlyRegularFilesAndMakeOnlyNewOnes) {
    folder.Write("file", "content");
    fs::create_directory(folder / "folder");
    fs::create_symlink(folder / "file", folder / "link");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    struct Case {
        const char* name;
        FsStatus opened;
        FsStatus made;
        FileKind kind;
    };
    for (const Case& entry : {
             Case{"file", FsStatus::Ok, FsStatus::AlreadyExists, FileKind::Regular},
             Case{"folder", FsStatus::NotRegularFile, FsStatus::AlreadyExists, FileKind::Folder},
             Case{"link", FsStatus::NotRegularFile, FsStatus::AlreadyExists, FileKind::Link},
             Case{"pipe", FsStatus::NotRegularFile, FsStatus::AlreadyExists, FileKind::Special},
         }) {
        SCOPED_TRACE(entry.name);
        const std::string path = folder / entry.name;
        EXPECT_EQ(disk->OpenForReading(path).status, entry.opened);
        EXPECT_EQ(disk->OpenForOverwriting(path).status, entry.opened);
        EXPECT_EQ(disk->CreateExclusively(path).status, entry.made);
        ASSERT_TRUE(disk->Info(path));
        EXPECT_EQ(disk->Info(path)->kind, entry.kind);
    }
    EXPECT_EQ(folder.Read("file"), "content") << "opening for overwriting cuts nothing off";
    EXPECT_EQ(disk->OpenForReading(folder / "none").status, FsStatus::NotFound);
    EXPECT_FALSE(disk->Info(folder / "none"));
}

TEST_F(SystemFiles, HaveOneIdentityUnderAllTheirNames) {
    folder.Write("file", "");
    folder.Write("other", "");
    fs::create_directory(folder / "below");
    fs::create_hard_link(folder / "file", folder / "hard");
    fs::create_symlink(folder / "file", folder / "soft");
    fs::create_directory_symlink(folder.Path(), folder / "below/up");
    struct Case {
        std::string a, b;
        bool same;
    };
    const auto path = [&](const char* name) { return folder / name; };
    for (const Case& entry : {
             Case{path("file"), path("file"), true},
             Case{path("file"), path("hard"), true},
             Case{path("file"), path("soft"), true},
             Case{path("file"), path("./below/..//file"), true},
             Case{path("file"), path("below/up/file"), true},
             Case{path("file"), path("other"), false},
             Case{path("file"), path("FILE"), false},
             Case{path("file"), path("none"), false},
             Case{path("none"), path("./none"), true}, // neither is there
             Case{path("none"), path("nine"), false},
             Case{"C:\\Text\\a.TXT", "c:\\text\\A.txt", true},
             Case{"C:\\Text\\\xC3\x84.txt", "c:\\text\\\xC3\xA4.txt", true},
             Case{"C:\\a.txt", "D:\\a.txt", false},
             Case{"\\\\Server\\a", "\\\\SERVER\\A", true},
             Case{"C:\\a\xFF", "c:\\A\xFF", true}, // not UTF-8
             Case{"C:\\a", path("file"), false},
         }) {
        SCOPED_TRACE(entry.a + " and " + entry.b);
        EXPECT_EQ(SameFile(*disk, entry.a, entry.b), entry.same);
        EXPECT_EQ(SameFile(*disk, entry.b, entry.a), entry.same);
    }
}

} // namespace
} // namespace zr5::test
