#include "libs/system/disk_kind.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <utility>

namespace zr5 {
namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t FuseType = 0x65735546; // also over a block device, as ntfs-3g

/// Numbers from the manual page statfs(2) and the headers of the kernel.
constexpr std::array<std::pair<std::uint32_t, DiskKind>, 15> KindsByType = {{
    {0x9123683E, DiskKind::Btrfs},
    {0x2FC12FC1, DiskKind::Zfs},
    {0xCA451A4E, DiskKind::Bcachefs},
    {0xF2F52010, DiskKind::F2fs},
    {0x3434, DiskKind::Nilfs},
    {0x794C7630, DiskKind::Overlay},
    {0x6969, DiskKind::Nfs},
    {0xFF534D42, DiskKind::Smb}, // cifs
    {0xFE534D42, DiskKind::Smb}, // its second version
    {0x517B, DiskKind::Smb},     // smbfs
    {0x5346414F, DiskKind::Afs},
    {0x6B414653, DiskKind::Afs}, // the kernel's own
    {0x73757245, DiskKind::Afs}, // Coda, its offspring
    {0x00C36400, DiskKind::Ceph},
    {0x01021997, DiskKind::Plan9},
}};

/// What stands in a file of one character.
char CharacterIn(const fs::path& file) {
    char character = '\0';
    std::ifstream(file).get(character);
    return character;
}

} // namespace

DiskKind KindFrom(const DiskFacts& facts) {
    const auto found =
        std::ranges::find(KindsByType, facts.fileSystemType, [](const auto& p) { return p.first; });
    if (found != KindsByType.end()) return found->second;
    if (!facts.device.isThere) {
        return facts.fileSystemType == FuseType ? DiskKind::Fuse : DiskKind::Plain;
    }
    if (facts.device.isRemovable) return DiskKind::Removable;
    return facts.device.isRotating ? DiskKind::Plain : DiskKind::SolidState;
}

bool IsCopyOnWrite(DiskKind kind) {
    return kind >= DiskKind::Btrfs && kind <= DiskKind::Nilfs;
}

BlockDevice ReadBlockDevice(const std::string& folder) {
    std::error_code failed;
    fs::path disk = fs::canonical(folder, failed);
    if (failed) return {};
    if (!fs::exists(disk / "queue", failed)) disk = disk.parent_path(); // of a partition
    BlockDevice device{.isThere = true,
                       .isRotating = CharacterIn(disk / "queue" / "rotational") != '0',
                       .isRemovable = CharacterIn(disk / "removable") == '1'};
    for (const auto& part : fs::directory_iterator(disk / "slaves", failed)) {
        const BlockDevice below = ReadBlockDevice(part.path().native());
        device.isRotating = device.isRotating && below.isRotating;
        device.isRemovable = device.isRemovable || below.isRemovable;
    }
    return device;
}

} // namespace zr5
