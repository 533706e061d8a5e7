#pragma once

// Writes random bytes over the content of a file that is to go. On plain disks the old content is
// gone then; on SSDs, in journals, snapshots and backups older copies can survive.

#include "libs/system/clock.h"
#include "libs/system/file_system.h"
#include "libs/system/random.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace zr5 {

class Overwriting {
  public:
    /// Of a file of this length; draws what its first bytes become.
    Overwriting(RandomSource& random, std::uint64_t lengthBytes);
    Overwriting(const Overwriting&) = delete;
    Overwriting& operator=(const Overwriting&) = delete;

    /// What the file begins with as soon as anything of it is overwritten: HeadBytes, or all of a
    /// shorter file.
    [[nodiscard]] std::span<const std::byte> Head() const;
    static constexpr std::size_t HeadBytes = 32;

    /// Overwrites the length once, but for holes, which take no room and hold nothing, and returns
    /// when that is on the disk. `progress` may be empty. After a failure some of the old content
    /// may stand.
    [[nodiscard]] FsStatus Run(OpenFile& file, const ProgressFunction& progress = {});

  private:
    static constexpr std::size_t PieceBytes = std::size_t{256} << 10U;

    [[nodiscard]] FsStatus WriteHead(OpenFile& file);
    [[nodiscard]] FsStatus WriteRange(OpenFile& file, ByteRange range,
                                      const ProgressFunction& progress);

    RandomSource& random_;
    std::uint64_t lengthBytes_;
    std::array<std::byte, PieceBytes> buffer_; ///< needs no memory when there may be none
    std::span<std::byte> piece_;               ///< as much of it as the file is long
};

} // namespace zr5
