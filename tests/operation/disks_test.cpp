// In place on disks of other kinds: without room, without a size, and such as write elsewhere than
// where the old content stands.

#include "operation/interruption_fixture.h"
#include "support/mounted_disk.h"

#include <memory>

namespace zr5::test {
namespace {

constexpr std::uint64_t MiB = std::uint64_t{1} << 20U;

class Disks : public Interruption {
  protected:
    /// Works on `a` of the disk in place; the report.
    std::string RunOn(const MountedDisk& mounted, Direction direction) {
        setup.Operation = direction;
        setup.Folder = {mounted.folder.Path(), mounted.folder.Path()};
        list = {};
        list.AddFile(mounted.folder / "a", mounted.folder / "a");
        return Run();
    }
};

TEST_F(Disks, WithoutASizeOrWithoutReservingAreWorkedOn) {
    const MountedDisk memory("ramfs", "");
    const MountedDisk xfs("xfs", 320 * MiB);
    if (!memory.IsMounted()) GTEST_SKIP() << "no disk can be mounted here";
    original = PatternBytes(3'000'000);
    for (const MountedDisk* mounted : {&memory, &xfs}) {
        if (!mounted->IsMounted()) continue;
        mounted->folder.Write("a", original);
        EXPECT_EQ(System().FreeBytes(memory.folder.Path()),
                  std::numeric_limits<std::uint64_t>::max());
        EXPECT_NE(RunOn(*mounted, Direction::Encrypt).find("-> "), std::string::npos);
        EXPECT_EQ(Decrypted(mounted->folder / "a"), original);
        EXPECT_NE(RunOn(*mounted, Direction::Decrypt).find("-> "), std::string::npos);
        EXPECT_EQ(mounted->folder.Read("a"), original);
    }
}

TEST_F(Disks, WithoutRoomKeepTheFileWholeAndSayWhy) {
    struct Case {
        std::unique_ptr<MountedDisk> disk;
        std::size_t length;
        const char* reason;
        DiskKind kind = DiskKind::Plain;
    };
    std::array cases{
        Case{std::make_unique<MountedDisk>("tmpfs", "size=14m"), 10 * MiB, "disk full"},
        Case{std::make_unique<MountedDisk>("btrfs", 256 * MiB), 85 * MiB,
             "The file is unchanged: the disk has no room to overwrite it.", DiskKind::Btrfs}};
    for (const Case& each : cases) {
        if (!each.disk->IsMounted()) continue;
        SCOPED_TRACE(each.reason);
        EXPECT_EQ(System().KindOfDisk(each.disk->folder.Path()), each.kind);
        original = PatternBytes(each.length);
        each.disk->folder.Write("a", original);
        sync();
        const std::string report = RunOn(*each.disk, Direction::Encrypt);
        EXPECT_NE(report.find(each.reason), std::string::npos) << report;
        EXPECT_EQ(each.disk->folder.Read("a") == original, true);
        if (each.disk->folder.Has("a.zr5-new")) {
            EXPECT_EQ(Decrypted(each.disk->folder / "a.zr5-new") == original, true);
        }
        EXPECT_EQ(config.Names(), Names{});
    }
    if (!cases[1].disk->IsMounted()) GTEST_SKIP() << "no btrfs can be made and mounted here";
}

} // namespace
} // namespace zr5::test
