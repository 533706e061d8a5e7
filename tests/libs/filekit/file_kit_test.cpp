#include "libs/filekit/purge.h"
#include "support/child_process.h"
#include "support/fixtures.h"
#include "support/mounted_disk.h"

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace zr5::test {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

constexpr std::size_t MiB = std::size_t{1} << 20U;

class Kit : public KitTest {
  protected:
    PurgeResult Purge(std::string_view name, PurgeMode mode = PurgeMode::OverwriteAndDelete,
                      const PurgeHooks& hooks = {}) {
        return kit->purge_file(folder / name, mode, hooks);
    }
    std::string NewName(std::string_view name) {
        return kit->new_filepath_extension(folder / name).value().substr(folder.Path().size());
    }
};

TEST_F(Kit, FindsTheFirstDifferenceCountedFromOne) {
    const std::string big = PatternBytes(2 * MiB + 10);
    const auto changed = [&](std::size_t at) {
        std::string bytes = big;
        bytes[at] ^= 1;
        return bytes;
    };
    const struct {
        std::string first, second;
        std::uint64_t expected; ///< 0: identical
    } cases[] = {{"abc", "abx", 3},
                 {"abc", "abcd", 4},
                 {"abc", "xbcd", 1},
                 {big, big, 0},
                 {big, changed(0), 1},
                 {big, changed(MiB), MiB + 1},
                 {big, changed(big.size() - 1), 2 * MiB + 10},
                 {big, big + "x", 2 * MiB + 11}};
    for (const auto& entry : cases) {
        SCOPED_TRACE(entry.expected);
        const std::string a = folder.Write("a", entry.first);
        const std::string b = folder.Write("b", entry.second);
        const Comparison expected{entry.expected == 0 ? CompareOutcome::Identical
                                                      : CompareOutcome::Different,
                                  entry.expected};
        EXPECT_EQ(kit->compare_files(a, b, {}), expected);
        EXPECT_EQ(kit->compare_files(b, a, {}), expected);
    }
}

TEST_F(Kit, SaysWhichFileCannotBeCompared) {
    const std::string file = folder.Write("file", "content");
    const std::string empty = folder.Write("empty", "");
    const std::string none = folder / "none";
    for (const auto& [first, second, code] :
         {std::tuple{none, file, CompareOutcome::FirstNotOpened},
          {file, none, CompareOutcome::SecondNotOpened},
          {empty, file, CompareOutcome::FirstEmpty},
          {file, empty, CompareOutcome::SecondEmpty},
          {empty, empty, CompareOutcome::FirstEmpty}})
        EXPECT_EQ(kit->compare_files(first, second, {}).outcome, code);
    disk.Fail(FsCall::Read, 1);
    EXPECT_EQ(kit->compare_files(file, file, {}).outcome, CompareOutcome::FirstNotRead);
    disk.Fail(FsCall::Read, 2);
    EXPECT_EQ(kit->compare_files(file, file, {}).outcome, CompareOutcome::SecondNotRead);
}

TEST_F(Kit, PurgesByOverwritingAllBeforeTheNameGoes) {
    for (const std::size_t length : {std::size_t{0}, std::size_t{1}, MiB, 2 * MiB + 1}) {
        SCOPED_TRACE(length);
        folder.Write("file", std::string(length, 'A'));
        disk.Reset();
        std::string last;
        disk.Before(FsCall::Remove, 1, [&] { last = folder.Read("file"); });
        EXPECT_EQ(Purge("file"), PurgeResult::Done);
        EXPECT_EQ(folder.Names(), Names{});
        EXPECT_EQ(disk.WrittenBytes(), length);
        EXPECT_EQ(last.size(), length);
        EXPECT_EQ(last.find("AAAAAAAA"), std::string::npos);
        const auto& calls = disk.Calls();
        ASSERT_GE(calls.size(), 2U);
        EXPECT_EQ(calls[calls.size() - 3], FsCall::Flush);
        EXPECT_EQ(calls.back(), FsCall::Remove);
    }
}

TEST_F(Kit, PurgesOnlyWhatItMay) {
    for (const char* content : {"content", ""}) { // an empty file, too, is asked about
        folder.Write("file", content);
        const auto refuse = [](const FileInfo&, std::span<const std::byte>) { return false; };
        EXPECT_EQ(Purge("file", PurgeMode::OverwriteAndDelete, {{}, refuse}),
                  PurgeResult::NotAllowed);
        EXPECT_EQ(folder.Read("file"), content);
    }
    disk.Reset();
    EXPECT_EQ(Purge("file", PurgeMode::DeleteOnly), PurgeResult::Done);
    EXPECT_EQ(disk.WrittenBytes(), 0U);
    folder.Write("file", "content");
    fs::create_hard_link(folder / "file", folder / "hard");
    folder.MakeSpecials("file");
    const Names before = folder.Names();
    for (const char* name : {"file", "hard", "link", "folder", "pipe", "none"})
        EXPECT_FALSE(HasGone(Purge(name))) << name;
    EXPECT_FALSE(HasGone(Purge("folder", PurgeMode::DeleteOnly)));
    EXPECT_EQ(folder.Names(), before);
    EXPECT_EQ(folder.Read("file"), "content");
}

TEST_F(Kit, BeginsNoPurgeThatItsFolderOrItsDiskWillNotLetEnd) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root, to act as two users and to mount disks";
    const std::string content(1'000'000, 'A');
    const std::string path = folder.Write("theirs", content);
    ASSERT_EQ(chmod(path.c_str(), 0666), 0);
    ASSERT_EQ(chmod(folder.Path().c_str(), 01777), 0); // as /tmp is
    EXPECT_TRUE(AsOrdinaryUser({}, [&] { return Purge("theirs") == PurgeResult::NotRemovable; }));
    EXPECT_EQ(folder.Read("theirs"), content);

    const MountedDisk copying("btrfs", 256 * MiB);
    if (!copying.IsMounted()) GTEST_SKIP() << "no btrfs can be made and mounted here";
    const std::string file = copying.folder.Write("file", std::string(80 * MiB, 'A'));
    fs::create_directory(copying.folder / "filler");
    for (unsigned i = 0; system->FreeBytes(file).value() > 70 * MiB; ++i) {
        copying.folder.Write("filler/" + std::to_string(i), PatternBytes(8 * MiB, i));
        sync(); // only then is it counted
    }
    EXPECT_EQ(kit->purge_file(file, PurgeMode::OverwriteAndDelete, {}), PurgeResult::NoRoom);
    EXPECT_EQ(copying.folder.Read("file"), std::string(80 * MiB, 'A'));
    copying.folder.Remove("filler");
    sync();
    EXPECT_EQ(kit->purge_file(file, PurgeMode::OverwriteAndDelete, {}), PurgeResult::Done);
}

TEST_F(Kit, OverwritesWhatWasReservedAndLeavesHolesAlone) {
    ASSERT_EQ(system->CreateExclusively(folder / "new").file->Reserve(MiB), FsStatus::Ok);
    EXPECT_EQ(Purge("new"), PurgeResult::Done);
    EXPECT_EQ(disk.WrittenBytes(), MiB);
    const std::string path = folder.Write("file", std::string(5000, 'A'));
    fs::resize_file(path, 64 * MiB);
    const OpenResult watching = system->OpenForReading(path);
    disk.Reset();
    EXPECT_EQ(Purge("file"), PurgeResult::Done);
    EXPECT_LT(disk.WrittenBytes(), MiB);
    std::vector<std::byte> begin(5000);
    ASSERT_EQ(watching.file->Read(begin).count, begin.size());
    EXPECT_EQ(
        std::string(reinterpret_cast<const char*>(begin.data()), begin.size()).find("AAAAAAAA"),
        std::string::npos);
}

TEST_F(Kit, PurgesAWriteProtectedFileOnlyOfItsOwner) {
    const std::string content = PatternBytes(5000);
    const std::string path = folder.Write("file", content);
    ASSERT_EQ(chmod(path.c_str(), 0444), 0);
    EXPECT_TRUE(AsOrdinaryUser({folder.Path(), path}, [&] {
        disk.Fail(FsCall::Remove, 1);
        return Purge("file") == PurgeResult::NotRemoved &&
               fs::status(path).permissions() == fs::perms{0444} && folder.Read("file") != content;
    }));
    EXPECT_TRUE(
        AsOrdinaryUser({folder.Path(), path}, [&] { return Purge("file") == PurgeResult::Done; }));
    EXPECT_FALSE(folder.Has("file"));
    if (geteuid() == 0) {
        const std::string roots = folder.Write("roots", content);
        EXPECT_TRUE(AsOrdinaryUser({}, [&] { return Purge("roots") == PurgeResult::NotOpened; }));
        EXPECT_EQ(folder.Read("roots"), content);
    }
}

TEST_F(Kit, LeavesAFileWholeOrTakesItsNameWhicheverCallFails) {
    using enum PurgeResult;
    for (const auto& [kind, result] :
         {std::pair{FsCall::Open, NotOpened}, std::pair{FsCall::FileInfo, NotOpened},
          std::pair{FsCall::Write, NotOverwritten}, std::pair{FsCall::Flush, NotOverwritten},
          std::pair{FsCall::Remove, NotRemoved}}) {
        SCOPED_TRACE(static_cast<int>(kind));
        const std::string content(1000, 'A');
        folder.Write("file", content);
        disk.Reset();
        disk.Fail(kind, 1);
        EXPECT_EQ(Purge("file"), result);
        EXPECT_TRUE(disk.AllMet());
        EXPECT_NE(folder.Has("file"), HasGone(result));
        EXPECT_TRUE(result != NotOpened || folder.Read("file") == content);
    }
    folder.Write("file", "old");
    disk.Reset();
    disk.Before(FsCall::Flush, 1, [&] {
        folder.Remove("file");
        folder.Write("file", "of somebody else");
    });
    EXPECT_EQ(Purge("file"), NameTaken);
    EXPECT_EQ(folder.Read("file"), "of somebody else");
}

TEST_F(Kit, FindsAFreeNameBesideAFileUntilEveryNameIsTaken) {
    EXPECT_EQ(NewName("a.zr5"), "a.zr5.zr5-new");
    EXPECT_EQ(NewName("a"), "a.zr5-new");
    folder.Write("a.zr5-new", "");
    EXPECT_EQ(NewName("a"), "a.zr5-new-2");
    fs::create_symlink(folder / "nowhere", folder / "a.zr5-new-2"); // taken, too
    for (int i = 3; i <= 999; ++i)
        fs::create_directory(folder / "a.zr5-new-" + std::to_string(i));
    EXPECT_FALSE(kit->new_filepath_extension(folder / "a"));
    folder.Remove("a.zr5-new-999");
    EXPECT_EQ(NewName("a"), "a.zr5-new-999");
}

TEST_F(Kit, ShortensALongNameBetweenItsCharacters) {
    EXPECT_EQ(NewName(std::string(248, 'x')), std::string(247, 'x') + ".zr5-new");
    EXPECT_EQ(NewName(std::string(244, 'x') + "\xE2\x82\xAC" + "yyyy"),
              std::string(244, 'x') + "\xE2\x82\xAC.zr5-new");
    EXPECT_EQ(NewName(std::string(246, 'x') + "\xE2\x82\xAC"), std::string(246, 'x') + ".zr5-new");
    EXPECT_EQ(NewName(std::string(255, '\x80')), std::string(247, '\x80') + ".zr5-new");
    folder.Write(std::string(247, 'x') + ".zr5-new", "");
    EXPECT_EQ(NewName(std::string(255, 'x')), std::string(245, 'x') + ".zr5-new-2");
}

TEST_F(Kit, KnowsWhereANewFileCanBeMade) {
    folder.MakeSpecials("file");
    EXPECT_TRUE(kit->new_file_creatable(folder / "new"));
    for (const char* name : {"link", "dangling", "folder", "none/new", "pipe/new"})
        EXPECT_FALSE(kit->new_file_creatable(folder / name)) << name;
}

} // namespace
} // namespace zr5::test
