#pragma once

// The one walk through an input folder: counting, listing and operations all take it, so that
// they agree. Each folder's files come before its subfolders, depth first, in the order of the
// file system; nothing is sorted.

#include "util/machine.h"
#include "util/user_port.h"

#include <cstdint>
#include <functional>
#include <string>

namespace zr5 {

struct WalkRequest {
    std::string folder; ///< as chosen, ending in a separator
    std::string pattern;
    bool withSubfolders = false;
    bool addsUpSizes = false;
    std::uint64_t limit = 0; ///< the walk stops exactly there; 0: no limit
};

struct WalkResult {
    std::uint64_t files = 0;
    std::uint64_t totalBytes = 0; ///< of the files whose length could be read, if asked for
    std::uint64_t subfolders = 0; ///< examined; one whose reading was ended is not
    std::uint64_t unreadable = 0; ///< folders, the input folder included, that cannot be read
    bool cutShort = false;        ///< by the limit or by the visitor
    bool wasStopped = false;      ///< by the visitor: there may be more than was counted
};

/// A folder that a walk has entered.
struct EnteredFolder {
    std::string path; ///< ends in a separator, as every path of a folder here
    FileIdentity identity;
    std::uint64_t matchingFiles = 0;
    std::uint64_t subfolders = 0;
};

/// Told of what a walk comes by.
class WalkVisitor {
  public:
    virtual ~WalkVisitor() = default;
    virtual void EnterFolder(const EnteredFolder& /*folder*/) {}
    virtual void MeetProhibitedFolder(const std::string& /*path*/) {}
    virtual void MeetUnreadableFolder(const std::string& /*path*/) {}
    virtual void MeetFile(const std::string& /*path*/) {}
    /// Asked after each file and folder, and now and then while a long folder is read; false ends
    /// the walk.
    [[nodiscard]] virtual bool GoesOn() { return true; }
};

/// Asked again and again while a walk goes on; true ends it.
using StopAsked = std::function<bool()>;

/// Lets the interface react after each file and folder, and ends the walk when that is asked for.
class ConsiderateVisitor : public WalkVisitor {
  public:
    ConsiderateVisitor(UserPort& user, const StopAsked& stopped) : user_(user), stopped_(stopped) {}
    [[nodiscard]] bool GoesOn() override {
        user_.ProcessEvents();
        return !stopped_();
    }

  private:
    UserPort& user_;
    const StopAsked& stopped_;
};

/// Each folder is entered once. Regular files only, names that begin with a dot included. Links are
/// neither entered nor taken, and forbidden folders are never entered.
[[nodiscard]] WalkResult WalkFolder(const Machine& machine, const WalkRequest& request,
                                    WalkVisitor& visitor);

/// What a message that nothing was found adds when there were folders that cannot be read:
/// empty, or a line of its own.
[[nodiscard]] std::string UnreadableNote(const WalkResult& walked);

} // namespace zr5
