#pragma once

// The one walk through an input folder: counting, listing and operations all take it, so that
// they agree. Each folder's files come before its subfolders, depth first, in the order of the
// file system; nothing is sorted.

#include "libs/file_system.h"

#include <cstdint>
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
    std::uint64_t subfolders = 0; ///< examined
    bool cutShort = false;        ///< by the limit or by the visitor
};

/// Told of what a walk comes by. Every path of a folder ends in a separator.
class WalkVisitor {
  public:
    virtual ~WalkVisitor() = default;
    /// A folder is entered; so many files in it match, and so many subfolders are in it.
    virtual void EnterFolder(const std::string& /*path*/, std::uint64_t /*matchingFiles*/,
                             std::uint64_t /*subfolders*/) {}
    virtual void MeetProhibitedFolder(const std::string& /*path*/) {}
    virtual void MeetFile(const std::string& /*path*/) {}
    /// Asked after each file and folder; false ends the walk.
    [[nodiscard]] virtual bool GoesOn() { return true; }
};

/// Each folder is entered once. Regular files only, names that begin with a dot included. Links are
/// neither entered nor taken, and forbidden folders are never entered. A folder that cannot be read
/// has nothing in it.
[[nodiscard]] WalkResult WalkFolder(FileSystem& fileSystem, const WalkRequest& request,
                                    WalkVisitor& visitor);

} // namespace zr5
