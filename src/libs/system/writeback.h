#pragma once

// Keeps the disk busy while a long file is written, and little of it in memory: the flush at the
// end is then short, progress is that of the disk, and what other programs have in the system's
// memory stays there.

#include "libs/system/file_system.h"

#include <cstdint>

namespace zr5 {

class Writeback {
  public:
    explicit Writeback(std::uint64_t offset = 0)
        : begun_(offset), written_(offset), started_(offset) {}
    /// To be told of everything that is written to `file` without a gap, from `offset` on.
    void Wrote(OpenFile& file, std::uint64_t bytes) {
        written_ += bytes;
        while (written_ - started_ >= Step) {
            file.StartWriteback(started_, Step);
            started_ += Step;
            if (started_ - begun_ > MostWaiting) {
                const std::uint64_t oldest = started_ - MostWaiting - Step;
                file.AwaitWriteback(oldest, Step);
                file.ForgetCached(oldest, Step);
            }
        }
    }

  private:
    static constexpr std::uint64_t Step = std::uint64_t{8} << 20U;
    static constexpr std::uint64_t MostWaiting = 8 * Step;

    std::uint64_t begun_;
    std::uint64_t written_;
    std::uint64_t started_;
};

} // namespace zr5
