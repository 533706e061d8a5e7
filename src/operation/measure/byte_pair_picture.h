#pragma once

// The picture of a file's byte pairs: how often each pair occurs, how bright that is, and the rules
// of `frmGraphic`, which reads the file and shows it.

#include "libs/system/clock.h"
#include "libs/system/file_system.h"
#include "util/user_port.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace zr5 {

inline constexpr std::size_t PairSide = 256;

class PairCounts {
  public:
    /// Takes the pairs 1 and 2, 3 and 4, ... of a block; a last byte without partner is left out.
    void Add(std::span<const std::byte> block);
    [[nodiscard]] std::uint64_t Total() const { return total_; }
    [[nodiscard]] std::uint64_t Of(std::uint8_t first, std::uint8_t second) const {
        return counts_[second * PairSide + first];
    }

    /// The brightness of every pair, row by row: the second byte is the row, the first the column.
    /// It depends on how often the pair occurs, compared with an even distribution: 0 never, 128
    /// just as often, 255 far more often. Square roots, because those of counts of random bytes
    /// scatter alike whatever the count.
    [[nodiscard]] std::vector<std::uint8_t> Brightness() const;

    /// So many pairs of random bytes, the same ones each time.
    [[nodiscard]] static PairCounts OfRandom(std::uint64_t pairs);

  private:
    std::vector<std::uint64_t> counts_ = std::vector<std::uint64_t>(PairSide * PairSide);
    std::uint64_t total_ = 0;
};

class BytePairPicture {
  public:
    enum class State { Ready, Drawing, Finished };

    /// Everything outlives the picture.
    BytePairPicture(FileSystem& fileSystem, UserPort& user, const Clock& clock, std::string path);
    /// Called when something is shown differently, while drawing at most every 50 ms.
    void SetView(std::function<void()> changed) { changed_ = std::move(changed); }

    [[nodiscard]] const std::string& Path() const { return path_; }
    [[nodiscard]] State state() const { return state_; }
    /// "Display", "Stop" or "Close".
    [[nodiscard]] std::string ButtonCaption() const;
    [[nodiscard]] const PairCounts& Counts() const { return counts_; }
    /// What as many random bytes would look like: as many as the file has, or, once the drawing
    /// has ended, as many as were drawn.
    [[nodiscard]] const PairCounts& Random() const { return random_; }
    /// Whether there is a picture to save.
    [[nodiscard]] bool CanSave() const { return state_ == State::Finished && counts_.Total() != 0; }
    /// How much of a bar of this width is filled, in whole units.
    [[nodiscard]] int ProgressWidth(int fullWidth) const;

    /// The button: starts the drawing and returns when it has ended; ends it; closes.
    void Press();
    /// The window is to be closed. False while it draws: that is stopped, and the window closes
    /// when it has ended (`ClosesNow`).
    [[nodiscard]] bool MayClose();
    [[nodiscard]] bool ClosesNow() const { return closeRequested_ && state_ != State::Drawing; }

  private:
    static constexpr std::size_t ReadBytesAtOnce = 8192;

    void Draw();
    [[nodiscard]] FsStatus ReadPairs();
    void Notify();

    FileSystem& fileSystem_;
    UserPort& user_;
    const Clock& clock_;
    std::string path_;
    std::function<void()> changed_;
    State state_ = State::Ready;
    PairCounts counts_;
    PairCounts random_;
    std::uint64_t readBytes_ = 0;
    std::uint64_t lengthBytes_ = 0;
    bool stopRequested_ = false;
    bool closeRequested_ = false;
};

} // namespace zr5
