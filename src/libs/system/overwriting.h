#pragma once

// Writes random bytes over the content of a file that is to go. On plain disks the old content is
// gone then; on SSDs, in journals, snapshots and backups older copies can survive.

#include "libs/system/clock.h"
#include "libs/system/file_system.h"
#include "libs/system/random.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zr5 {

class Overwriting {
  public:
    /// Of a file of this length; draws what its first bytes become.
    Overwriting(RandomSource& random, std::uint64_t lengthBytes);

    /// What the file begins with as soon as anything of it is overwritten: HeadBytes, or all of a
    /// shorter file.
    [[nodiscard]] std::span<const std::byte> Head() const;
    static constexpr std::size_t HeadBytes = 32;

    /// Overwrites the length once, but for holes, which take no room and hold nothing, and returns
    /// when that is on the disk. `progress` may be empty. After a failure some of the old content
    /// may stand.
    [[nodiscard]] FsStatus Run(OpenFile& file, const ProgressFunction& progress = {});

  private:
    [[nodiscard]] FsStatus WriteHead(OpenFile& file);
    [[nodiscard]] FsStatus WriteRange(OpenFile& file, ByteRange range,
                                      const ProgressFunction& progress);

    RandomSource& random_;
    std::uint64_t lengthBytes_;
    std::vector<std::byte> piece_;
};

} // namespace zr5
