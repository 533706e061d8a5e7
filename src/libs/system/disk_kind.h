#pragma once

// What kind of disk a file lies on, as far as it matters for overwriting: whether older copies of
// its content may be left elsewhere.

#include <cstdint>
#include <string>

namespace zr5 {

/// The first of these that the system says.
enum class DiskKind {
    /// Overwriting happens where the content stands, or nothing is known to the contrary. Memory
    /// counts here as well (tmpfs): there is no disk, and what was swapped out is no file's matter.
    Plain,
    // File systems that write what changes elsewhere:
    Btrfs,
    Zfs,
    Bcachefs,
    F2fs,
    Nilfs,
    Overlay, ///< what comes from a lower layer stays there
    // What the server does with it nobody knows:
    Nfs,
    Smb,
    Afs,
    Ceph,
    Plan9,
    Fuse, ///< as sshfs, or of any other program
    // Devices that write elsewhere by themselves:
    Removable, ///< as a rule flash
    SolidState,
};

/// What a block device says of itself.
struct BlockDevice {
    bool isThere = false;
    bool isRotating = true; ///< also where it does not say
    bool isRemovable = false;
};

/// What the system says of a disk.
struct DiskFacts {
    std::uint32_t fileSystemType = 0; ///< `f_type` of statfs(2)
    BlockDevice device;
};

[[nodiscard]] DiskKind KindFrom(const DiskFacts& facts);

/// Whether such a file system writes what changes elsewhere than where it stands.
[[nodiscard]] bool IsCopyOnWrite(DiskKind kind);

/// Reads what /sys/dev/block/MAJOR:MINOR, or a folder like it, says of a device: of a partition
/// its disk, of one that is made of others (encrypted, RAID) these as well.
[[nodiscard]] BlockDevice ReadBlockDevice(const std::string& folder);

} // namespace zr5
