#pragma once

// Ways in which a file that the program reads by itself can be another user's, or be within another
// user's reach.

#include <array>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace zr5::test {

struct ForeignWay {
    const char* reason; ///< as the program gives it
    bool ofFolder;
    bool (*makeForeign)(const std::string& path); ///< false: only root can
};

inline constexpr uid_t Nobody = 65534;

inline bool GiveAway(const std::string& path) {
    return chown(path.c_str(), Nobody, Nobody) == 0;
}
inline bool LetAllWrite(const std::string& path) {
    std::filesystem::permissions(path, std::filesystem::perms(0666));
    return true;
}
inline bool LetGroupWrite(const std::string& path) {
    std::filesystem::permissions(path, std::filesystem::perms(0660));
    return true;
}
inline bool ShareAsTmp(const std::string& path) {
    std::filesystem::permissions(path, std::filesystem::perms(01777));
    return true;
}
inline bool GiveSecondName(const std::string& path) {
    std::filesystem::create_hard_link(path, path + ".other");
    return true;
}

inline constexpr std::array ForeignWays = {
    ForeignWay{"It belongs to another user.", false, GiveAway},
    ForeignWay{"Other users may write to it.", false, LetAllWrite},
    ForeignWay{"Other users may write to it.", false, LetGroupWrite},
    ForeignWay{"It has several names (hard links).", false, GiveSecondName},
    ForeignWay{"Its folder belongs to another user.", true, GiveAway},
    ForeignWay{"Other users may write to its folder.", true, ShareAsTmp}};

/// Makes the file `name` of `folder` foreign in this way; false where only root can.
[[nodiscard]] inline bool MakeForeign(const ForeignWay& way, const std::string& folder,
                                      const std::string& name) {
    return way.makeForeign(way.ofFolder ? folder : folder + name);
}
/// Takes a folder back, and leaves nothing in it.
inline void TakeBack(const std::string& folder) {
    if (geteuid() == 0 && chown(folder.c_str(), 0, 0) != 0) return;
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        std::filesystem::remove_all(entry);
}

} // namespace zr5::test
