#pragma once

// The rules of `frmGraphic`: reads a file pair by pair for a picture, and its three states.

#include "libs/system/clock.h"
#include "libs/system/file_system.h"
#include "operation/pair_counts.h"
#include "util/user_port.h"

#include <functional>
#include <string>

namespace zr5 {

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
    static constexpr std::size_t BlockBytes = 8192;

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
