#include "files/folder_walk.h"

#include "files/file_pattern.h"
#include "files/forbidden_folder.h"
#include "support/fixtures.h"

#include <algorithm>
#include <filesystem>
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

    void EnterFolder(const EnteredFolder& folder) override {
        folders.push_back(folder.path + " " + std::to_string(folder.matchingFiles) + " " +
                          std::to_string(folder.subfolders));
    }
    void MeetProhibitedFolder(const std::string& path) override { prohibited.insert(path); }
    void MeetUnreadableFolder(const std::string& path) override { unreadable.push_back(path); }
    void MeetFile(const std::string& path) override { files.push_back(path); }
    bool GoesOn() override { return files.size() < most; }
};

/// A disk on which a system folder is mounted a second time, at `place`.
class MountedTwice : public test::FaultyFileSystem {
  public:
    using FaultyFileSystem::FaultyFileSystem;
    std::string place;
    std::optional<FileIdentity> IdentityOf(const std::string& path) override {
        return FaultyFileSystem::IdentityOf(path == place ? "/etc" : path);
    }
};

class FolderWalk : public test::MachineTest {
  protected:
    void Make(const std::string& name) {
        fs::create_directories(fs::path(folder / name).parent_path());
        folder.Write(name, "12345");
    }
    WalkResult WalkIn(const std::string& path, std::uint64_t limit = 0) {
        const std::size_t most = seen.most;
        seen = {};
        seen.most = most;
        const Machine here{user, twice, engine, kit, clock, random, "", config.Path()};
        return WalkFolder(here, {path, pattern, subfolders, true, limit}, seen);
    }
    WalkResult Walk(std::uint64_t limit = 0) { return WalkIn(folder.Path(), limit); }
    std::set<std::string> Names() {
        std::set<std::string> names;
        for (const std::string& path : seen.files)
            names.insert(path.substr(folder.Path().size()));
        return names;
    }
    MountedTwice twice{disk};
    std::string pattern = "*.*";
    bool subfolders = true;
    Recorder seen;
};

TEST_F(FolderWalk, TakesEachFoldersFilesBeforeItsSubfolders) {
    for (const char* name :
         {"a.txt", "b.doc", ".hidden.txt", "sub/c.txt", "sub/deep/d.txt", "way/e.txt", "way/f.doc"})
        Make(name);
    pattern = "*.txt";
    const WalkResult all = Walk();
    EXPECT_EQ(all.files, 5U);
    EXPECT_EQ(all.totalBytes, 25U);
    EXPECT_EQ(all.subfolders, 3U);
    EXPECT_FALSE(all.cutShort);
    EXPECT_EQ(Names(), (std::set<std::string>{"a.txt", ".hidden.txt", "sub/c.txt", "sub/deep/d.txt",
                                              "way/e.txt"}));
    const auto place = [&](const char* name) {
        return std::ranges::find(seen.files, folder / name);
    };
    EXPECT_LT(place("a.txt"), place("way/e.txt"));
    EXPECT_LT(place("sub/c.txt"), place("sub/deep/d.txt"));
    EXPECT_EQ(std::set(seen.folders.begin(), seen.folders.end()),
              (std::set{folder / " 2 2", folder / "sub/ 1 1", folder / "sub/deep/ 1 0",
                        folder / "way/ 1 0"}));
    subfolders = false;
    EXPECT_EQ(Walk().files, 2U);
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
    EXPECT_EQ(WalkIn(folder / "way/").files, 1U);
    EXPECT_EQ(seen.files, std::vector<std::string>{folder / "way/a"});
    EXPECT_EQ(seen.prohibited,
              (std::set<std::string>{folder / "way/.Trash-1000/", folder / "way/$RECYCLE.BIN/"}));
    EXPECT_EQ(WalkIn("/usr/share/", 1).files, 0U);
    EXPECT_EQ(seen.prohibited, std::set<std::string>{"/usr/share/"});
}

TEST_F(FolderWalk, PassesASystemFolderByUnderAnyName) {
    Make("a");
    Make("settings/b");
    twice.place = folder / "settings/";
    EXPECT_EQ(WalkIn(folder.Path()).files, 1U);
    EXPECT_EQ(seen.prohibited, std::set<std::string>{twice.place});
}

TEST_F(FolderWalk, PassesTheProgramsOwnFolderByAndWhatIsInIt) {
    Make("a");
    fs::create_directories(folder / "own/sub");
    for (const std::string own : {"own", "own/sub"}) {
        machine.ownFolder = folder / (own + "/");
        Make("own/sub/zr5e.journal");
        EXPECT_EQ(WalkFolder(machine, {folder.Path(), pattern, true}, seen).files, 1U) << own;
        const ForbiddenFolders forbidden(machine);
        EXPECT_EQ(forbidden.NameOf(folder / "own/sub/"), own == "own" ? "own" : "sub");
        EXPECT_EQ(forbidden.NameOf(folder / "own-not/"), std::nullopt);
    }
    EXPECT_EQ(seen.prohibited, (std::set{folder / "own/", folder / "own/sub/"}));
}

TEST_F(FolderWalk, StopsExactlyAtTheLimitOrWhenTold) {
    for (int i = 0; i < 25; ++i)
        Make("f" + std::to_string(i));
    Make("sub/last");
    EXPECT_TRUE(Walk(10).cutShort && !Walk(10).wasStopped);
    EXPECT_EQ(seen.files.size(), 10U);
    EXPECT_FALSE(Walk(27).cutShort);
    seen.most = 3;
    const WalkResult result = Walk();
    EXPECT_EQ(result.files, 3U);
    EXPECT_TRUE(result.cutShort && result.wasStopped);
    seen.most = 0;
    clock.step = std::chrono::milliseconds(20); // also while a long folder is read
    EXPECT_TRUE(Walk().wasStopped && seen.folders.empty());
}

TEST_F(FolderWalk, GoesOnPastFoldersThatCannotBeReadAndNamesThem) {
    const WalkResult gone = WalkIn(folder / "gone/");
    EXPECT_EQ(gone.files, 0U);
    EXPECT_FALSE(gone.cutShort);
    EXPECT_EQ(UnreadableNote(gone), "\r\n(One folder could not be read.)");
    Make("a");
    Make("sub/b");
    disk.Fail(test::FsCall::ListFolder, 2, FsStatus::NotPermitted);
    const WalkResult part = WalkIn(folder.Path());
    EXPECT_EQ(seen.files, std::vector<std::string>{folder / "a"});
    EXPECT_EQ(seen.unreadable, std::vector<std::string>{folder / "sub/"});
    EXPECT_EQ(part.unreadable, 1U);
    EXPECT_EQ(UnreadableNote(Walk()), "");
}

TEST(Folder, IsForbiddenUnderTheNameThatIsReported) {
    const std::pair<std::string_view, std::vector<std::string_view>> cases[] = {
        {"Users", {"C:\\Users\\someone\\Documents\\"}},
        {"Windows", {"C:\\windows2\\"}},
        {"Program Files", {"C:\\Program Files (x86)\\a\\"}},
        {"System Volume Information",
         {"C:\\System Volume Information\\", "/mnt/d/System Volume Information/"}},
        {"usr", {"/usr", "/usr/share/doc/"}},
        {"lib64", {"/lib64/"}},
        {"lib", {"/var/lib/x/"}},
        {"Recycle Bin",
         {"C:\\$Recycle.Bin\\", "/home/a/.local/share/Trash/files/", "/media/stick/.Trash-1000/",
          "/media/stick/$RECYCLE.BIN/"}},
        {"", {"C:\\data\\Windows\\", "C:", "/USR/", "/home/a/usr/", "/home/a/Trash/", "/"}}};
    for (const auto& [reported, paths] : cases) {
        for (const std::string_view path : paths)
            EXPECT_EQ(ForbiddenFolderName(path).value_or(""), reported) << path;
    }
}

TEST(FilePattern, DecidesByBaseAndExtension) {
    using Names = std::vector<std::string_view>;
    const std::tuple<std::string_view, Names, Names> cases[] = {
        {"*.txt", {"notes.txt"}, {"notes", "a:b.txt", "a?b.txt", "a\\b.txt"}},
        {"*.TXT", {}, {"notes.txt"}},
        {"*.*", {"notes", "what?"}, {}},
        {"report?.txt", {"report1.txt", "report\xC3\xA9.txt", "report\xFF.txt"}, {"report.txt"}},
        {"report\xFE.txt", {}, {"report\xFF.txt"}},
        {"a*b*c.d?", {"aXbYc.dZ", "abcbc.d1"}, {"aXbY.dZ"}},
        {"abc*", {"abc"}, {}},
        {"noext", {"noext.txt"}, {"noext.a.b"}},
        {"*", {"anything.at.all"}, {}},
        {"*.", {"plain"}, {"plain.t"}},
        {".*", {".bashrc"}, {"a.bashrc"}},
        {"*.gz", {"a.tar.gz"}, {}},
        {"a.*", {}, {"a.tar.gz"}},
        {"a.txt", {" a.txt "}, {}},
        {" a.txt ", {"a.txt"}, {}}};
    for (const auto& [pattern, matching, others] : cases) {
        for (const std::string_view name : matching)
            EXPECT_TRUE(MatchesPattern(name, pattern)) << name << " against " << pattern;
        for (const std::string_view name : others)
            EXPECT_FALSE(MatchesPattern(name, pattern)) << name << " against " << pattern;
    }
    std::string many; // is decided without trying everything
    for (int i = 0; i < 100; ++i)
        many += "a*";
    EXPECT_FALSE(MatchesPattern(std::string(250, 'a') + ".b", many + "x.b"));
    EXPECT_TRUE(MatchesPattern(std::string(250, 'a') + ".b", many + ".b"));
}

} // namespace
} // namespace zr5
