#pragma once

// Keeps the disk busy while a long file is written, and little of it in memory: the flush at the
// end is then short, progress is that of the disk, and what other programs have in the system's
// memory stays there.

#include "libs/system/file_system.h"

#include <cstdint>

namespace zr5 {

class Writeback {
  public:
    /// To be told of everything that is appended to `file`, from its beginning on.
    void Wrote(OpenFile& file, std::uint64_t bytes) {
        written_ += bytes;
        while (written_ - started_ >= Step) {
            file.StartWriteback(started_, Step);
            started_ += Step;
            if (started_ > MostWaiting) {
                const std::uint64_t oldest = started_ - MostWaiting - Step;
                file.AwaitWriteback(oldest, Step);
                file.ForgetCached(oldest, Step);
            }
        }
    }

  private:
    static constexpr std::uint64_t Step = std::uint64_t{8} << 20U;
    static constexpr std::uint64_t MostWaiting = 8 * Step;

    std::uint64_t written_ = 0;
    std::uint64_t started_ = 0;
};

} // namespace zr5
