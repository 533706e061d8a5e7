#pragma once

// Ways in which a file that the program reads unasked can be another user's, or within his reach.

#include "support/temporary_folder.h"

#include <array>
#include <sys/stat.h>
#include <unistd.h>

namespace zr5::test {

struct ForeignWay {
    const char* reason; ///< as the program gives it
    bool ofFolder = false;
    mode_t mode = 0; ///< 0: it is given to another user
    bool hasTwoNames = false;
};
inline constexpr std::array ForeignWays = {
    ForeignWay{"It belongs to another user."},
    ForeignWay{"Other users may write to it.", false, 0602},
    ForeignWay{"Other users may write to it.", false, 0620},
    ForeignWay{"It has several names (hard links).", false, 0600, true},
    ForeignWay{"Its folder belongs to another user.", true},
    ForeignWay{"Other users may write to its folder.", true, 01777}};

/// Makes `name` in `folder` foreign; false where only root can.
[[nodiscard]] inline bool MakeForeign(const ForeignWay& way, const TemporaryFolder& folder,
                                      const char* name) {
    const std::string path = way.ofFolder ? folder.Path() : folder / name;
    if (way.hasTwoNames) return link(path.c_str(), (path + ".too").c_str()) == 0;
    return way.mode == 0 ? chown(path.c_str(), 65534, 65534) == 0
                         : chmod(path.c_str(), way.mode) == 0;
}
/// An own folder again, and empty.
inline void TakeBack(const TemporaryFolder& folder) {
    EXPECT_EQ(chown(folder.Path().c_str(), geteuid(), getegid()), 0);
    EXPECT_EQ(chmod(folder.Path().c_str(), 0700), 0);
    folder.Empty();
}

} // namespace zr5::test
