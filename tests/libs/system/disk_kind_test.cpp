#include "libs/system/disk_kind.h"

#include "support/temporary_folder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace zr5::test {
namespace {

constexpr std::uint32_t Ext4 = 0xEF53;
constexpr std::uint32_t Tmpfs = 0x01021994;
constexpr std::uint32_t Xfs = 0x58465342;
constexpr std::uint32_t Fuse = 0x65735546;

TEST(DiskKind, IsThatOfTheFileSystemBeforeThatOfTheDevice) {
    const BlockDevice none;
    const BlockDevice rotating{.isThere = true};
    const BlockDevice flash{.isThere = true, .isRotating = false};
    const BlockDevice stick{.isThere = true, .isRotating = true, .isRemovable = true};
    const struct {
        DiskFacts facts;
        DiskKind kind;
    } cases[] = {{{Ext4, rotating}, DiskKind::Plain},     {{Ext4, flash}, DiskKind::SolidState},
                 {{Xfs, flash}, DiskKind::SolidState},    {{Xfs, stick}, DiskKind::Removable},
                 {{Tmpfs, none}, DiskKind::Plain},        {{0, none}, DiskKind::Plain},
                 {{Fuse, none}, DiskKind::Fuse},          {{Fuse, flash}, DiskKind::SolidState},
                 {{Fuse, rotating}, DiskKind::Plain},     {{0x9123683E, flash}, DiskKind::Btrfs},
                 {{0x2FC12FC1, none}, DiskKind::Zfs},     {{0xCA451A4E, flash}, DiskKind::Bcachefs},
                 {{0x794C7630, none}, DiskKind::Overlay}, {{0x6969, none}, DiskKind::Nfs},
                 {{0xFF534D42, none}, DiskKind::Smb}};
    for (const auto& [facts, kind] : cases)
        EXPECT_EQ(KindFrom(facts), kind) << std::hex << facts.fileSystemType;
}

TEST(DiskKind, IsReadFromTheDiskOfAPartitionAndFromWhatADiskIsMadeOf) {
    namespace fs = std::filesystem;
    const TemporaryFolder system;
    for (const char* folder : {"sda/sda1", "sda/queue", "dm-0/queue", "dm-0/slaves", "odd/queue"})
        fs::create_directories(system / folder);
    system.Write("sda/queue/rotational", "1\n");
    system.Write("sda/removable", "1\n");
    system.Write("dm-0/queue/rotational", "0\n");
    system.Write("dm-0/removable", "0\n");
    fs::create_directory_symlink(system / "sda/sda1", system / "8:1");
    fs::create_directory_symlink(system / "8:1", system / "dm-0/slaves/sda1");
    const auto said = [&](const char* name) {
        const BlockDevice device = ReadBlockDevice(system / name);
        return std::array{device.isThere, device.isRotating, device.isRemovable};
    };
    EXPECT_EQ(said("8:1"), (std::array{true, true, true}));
    EXPECT_EQ(said("dm-0"), (std::array{true, false, true}));
    EXPECT_EQ(said("odd"), (std::array{true, true, false})) << "it says nothing";
    EXPECT_EQ(said("0:42"), (std::array{false, true, false}));
}

} // namespace
} // namespace zr5::test
