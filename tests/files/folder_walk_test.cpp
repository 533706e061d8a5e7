#include "files/folder_walk.h"

#include "files/forbidden_folder.h"
#include "support/faulty_file_system.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <sys/stat.h>
#include <vector>

namespace zr5 {
namespace {

namespace fs = std::filesystem;

class Recorder : public WalkVisitor {
  public:
    std::vector<std::string> files;
    std::vector<std::string> folders;
    std::set<std::string> prohibited;
    std::vector<std::string> unreadable;
    std::size_t most = 1'000'000;

    void EnterFolder(const std::string& path, std::uint64_t matching,
                     std::uint64_t subfolders) override {
        folders.push_back(path + " " + std::to_string(matching) + " " + std::to_string(subfolders));
    }
    void MeetProhibitedFolder(const std::string& path) override { prohibited.insert(path); }
    void MeetUnreadableFolder(const std::string& path) override { unreadable.push_back(path); }
    void MeetFile(const std::string& path) override { files.push_back(path); }
    bool GoesOn() override { return files.size() < most; }
};

class FolderWalk : public testing::Test {
  protected:
    void Make(const std::string& name) {
        fs::create_directories(fs::path(folder / name).parent_path());
        folder.Write(name, "12345");
    }
    WalkResult Walk(const std::string& pattern = "*.*", bool subfolders = true,
                    std::uint64_t limit = 0) {
        seen = {};
        return WalkFolder(*system, {folder.Path(), pattern, subfolders, true, limit}, seen);
    }
    std::set<std::string> Names() {
        std::set<std::string> names;
        for (const std::string& path : seen.files) {
            names.insert(path.substr(folder.Path().size()));
        }
        return names;
    }
    test::TemporaryFolder folder;
    std::unique_ptr<FileSystem> system = MakeSystemFileSystem();
    Recorder seen;
};

TEST_F(FolderWalk, TakesEachFoldersFilesBeforeItsSubfolders) {
    for (const char* name : {"a.txt", "b.doc", ".hidden.txt", "sub/c.txt", "sub/deep/d.txt"}) {
        Make(name);
    }
    const WalkResult all = Walk("*.txt");
    EXPECT_EQ(all.files, 4U);
    EXPECT_EQ(all.totalBytes, 20U);
    EXPECT_EQ(all.subfolders, 2U);
    EXPECT_FALSE(all.cutShort);
    EXPECT_EQ(Names(),
              (std::set<std::string>{"a.txt", ".hidden.txt", "sub/c.txt", "sub/deep/d.txt"}));
    EXPECT_EQ(seen.files.back(), folder / "sub/deep/d.txt");
    EXPECT_EQ(seen.folders,
              (std::vector<std::string>{folder.Path() + " 2 1", folder.Path() + "sub/ 1 1",
                                        folder.Path() + "sub/deep/ 1 0"}));
    EXPECT_EQ(Walk("*.txt", false).files, 2U);
}

TEST_F(FolderWalk, NeitherTakesNorFollowsWhatIsNoPlainFile) {
    Make("real/file");
    fs::create_directory_symlink(folder.Path(), folder / "real/loop");
    fs::create_symlink(folder / "real/file", folder / "link");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(Walk().files, 1U);
    EXPECT_EQ(Names(), std::set<std::string>{"real/file"});
}

TEST_F(FolderWalk, PassesForbiddenFoldersByAlsoBehindALinkToTheFolder) {
    Make("in/a");
    Make("in/.Trash-1000/b");
    Make("in/$RECYCLE.BIN/c");
    fs::create_directory_symlink(folder / "in", folder / "way");
    seen = {};
    const WalkResult result =
        WalkFolder(*system, {folder.Path() + "way/", "*.*", true, false, 0}, seen);
    EXPECT_EQ(result.files, 1U);
    EXPECT_EQ(seen.files, std::vector<std::string>{folder / "way/a"});
    EXPECT_EQ(seen.prohibited,
              (std::set<std::string>{folder / "way/.Trash-1000/", folder / "way/$RECYCLE.BIN/"}));
    seen = {};
    EXPECT_EQ(WalkFolder(*system, {"/usr/share/", "*.*", true, false, 1}, seen).files, 0U);
    EXPECT_EQ(seen.prohibited, std::set<std::string>{"/usr/share/"});
}

/// A disk on which a system folder is mounted a second time.
class MountedTwice : public test::FaultyFileSystem {
  public:
    using FaultyFileSystem::FaultyFileSystem;
    std::string place;
    std::optional<FileIdentity> IdentityOf(const std::string& path) override {
        return FaultyFileSystem::IdentityOf(path == place ? "/etc" : path);
    }
};

TEST_F(FolderWalk, PassesASystemFolderByUnderAnyName) {
    Make("a");
    Make("settings/b");
    MountedTwice disk(*system);
    disk.place = folder / "settings/";
    seen = {};
    EXPECT_EQ(WalkFolder(disk, {folder.Path(), "*.*", true, false, 0}, seen).files, 1U);
    EXPECT_EQ(seen.prohibited, std::set<std::string>{disk.place});
    EXPECT_EQ(ForbiddenFolders(disk).NameOf(disk.place), "etc");
}

TEST_F(FolderWalk, StopsExactlyAtTheLimitOrWhenTold) {
    for (int i = 0; i < 25; ++i) {
        Make("f" + std::to_string(i));
    }
    Make("sub/last");
    EXPECT_EQ(Walk("*.*", true, 10).files, 10U);
    EXPECT_EQ(seen.files.size(), 10U);
    EXPECT_TRUE(Walk("*.*", true, 10).cutShort);
    EXPECT_FALSE(Walk("*.*", true, 27).cutShort);
    Recorder impatient;
    impatient.most = 3;
    const WalkResult result =
        WalkFolder(*system, {folder.Path(), "*.*", true, false, 0}, impatient);
    EXPECT_EQ(result.files, 3U);
    EXPECT_TRUE(result.cutShort);
}

TEST_F(FolderWalk, GoesOnPastFoldersThatCannotBeReadAndNamesThem) {
    const WalkResult gone =
        WalkFolder(*system, {folder.Path() + "gone/", "*.*", true, false, 0}, seen);
    EXPECT_EQ(gone.files, 0U);
    EXPECT_FALSE(gone.cutShort);
    EXPECT_EQ(UnreadableNote(gone), "\r\n(One folder could not be read.)");
    Make("a");
    Make("sub/b");
    test::FaultyFileSystem disk(*system);
    disk.Fail(test::FsCall::ListFolder, 2, FsStatus::NotPermitted);
    seen = {};
    const WalkResult part = WalkFolder(disk, {folder.Path(), "*.*", true, false, 0}, seen);
    EXPECT_EQ(seen.files, std::vector<std::string>{folder / "a"});
    EXPECT_EQ(seen.unreadable, std::vector<std::string>{folder / "sub/"});
    EXPECT_EQ(part.unreadable, 1U);
    EXPECT_EQ(UnreadableNote(Walk()), "");
}

} // namespace
} // namespace zr5
