#pragma once

// A walk for which the user has to wait: it is seen and can be stopped.

#include "files/folder_walk.h"
#include "util/work_shown.h"

#include <string>

namespace zr5 {

/// Lets the interface react, and shows after half a second, until it goes, how much was found so
/// far. The walk ends when the user presses Stop there, or when `stopped` says so.
class SeenSearch : public ConsiderateVisitor {
  public:
    /// All of it outlives this.
    SeenSearch(const Machine& machine, const std::string& folder, const StopAsked& stopped)
        : ConsiderateVisitor(machine.user, stopped),
          folder_(folder),
          shown_(machine.user, machine.clock) {}

    void EnterFolder(const EnteredFolder& /*folder*/) override { ++folders_; }
    void MeetFile(const std::string& /*path*/) override { ++files_; }
    [[nodiscard]] bool GoesOn() override;

  private:
    [[nodiscard]] std::string Text() const;

    const std::string& folder_;
    bool stopPressed_ = false;
    std::uint64_t folders_ = 0;
    std::uint64_t files_ = 0;
    WorkShown shown_; ///< the last to be made and the first to go: its end may press Stop
};

/// A walk that goes as far as the first file, seen.
[[nodiscard]] WalkResult SearchForOneFile(const Machine& machine, WalkRequest request,
                                          const StopAsked& stopped);

/// What a person reads when a search was stopped before it found a file: how far it came.
[[nodiscard]] std::string NothingFoundYetText(const WalkRequest& request, const WalkResult& found);

} // namespace zr5
