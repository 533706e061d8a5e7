#pragma once

// A disk of a test's own, seen by no other process, where the machine lets one be mounted.

#include "support/temporary_folder.h"

#include <cstdint>
#include <cstdlib>
#include <sched.h>
#include <string>
#include <sys/mount.h>

namespace zr5::test {

class MountedDisk {
  public:
    /// A disk in memory, of this type.
    MountedDisk(const char* type, const char* options) {
        isMounted_ = IsAlone() && mount("none", folder.Path().c_str(), type, 0, options) == 0;
    }
    /// A disk of so many bytes in a file; the programs that make one of this type may be missing.
    MountedDisk(const std::string& type, std::uint64_t bytes) {
        const std::string image = image_.Write("image", "");
        std::filesystem::resize_file(image, bytes);
        const std::string make = "mkfs." + type + " -q " + image + " >/dev/null 2>&1";
        const std::string show = "mount -o loop " + image + " " + folder.Path() + " 2>/dev/null";
        isMounted_ = IsAlone() && std::system(make.c_str()) == 0 && std::system(show.c_str()) == 0;
    }
    ~MountedDisk() {
        if (isMounted_) umount2(folder.Path().c_str(), MNT_DETACH);
    }
    MountedDisk(const MountedDisk&) = delete;
    MountedDisk& operator=(const MountedDisk&) = delete;

    [[nodiscard]] bool IsMounted() const { return isMounted_; }

    TemporaryFolder folder;

  private:
    static bool IsAlone() {
        return unshare(CLONE_NEWNS) == 0 &&
               mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    }

    TemporaryFolder image_;
    bool isMounted_ = false;
};

} // namespace zr5::test
