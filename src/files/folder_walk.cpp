#include "files/folder_walk.h"

#include "files/file_pattern.h"
#include "files/forbidden_folder.h"
#include "util/paths.h"

#include <algorithm>
#include <chrono>
#include <set>
#include <utility>

namespace zr5 {
namespace {

/// While a folder is read, the visitor is asked so often.
constexpr std::chrono::milliseconds AskedEvery{20};

class Walk {
  public:
    Walk(const Machine& machine, const WalkRequest& request, WalkVisitor& visitor)
        : fileSystem_(machine.fileSystem),
          clock_(machine.clock),
          request_(request),
          visitor_(visitor),
          forbidden_(machine) {}

    WalkResult Run() {
        const auto canonical = fileSystem_.CanonicalPath(request_.folder);
        if (!canonical) {
            PassBy(request_.folder);
            return result_;
        }
        const std::string judged = WithTrailingSeparator(*canonical);
        if (forbidden_.NameOf(judged)) {
            visitor_.MeetProhibitedFolder(request_.folder);
        } else {
            static_cast<void>(Enter(request_.folder, judged));
            if (examined_ > 0) result_.subfolders = examined_ - 1; // one is the input folder
        }
        return result_;
    }

  private:
    /// `canonical` leads to the folder without links, which is what is judged. False: the walk
    /// is over.
    bool Enter(const std::string& folder, const std::string& canonical) {
        // A folder can be met twice where it is mounted a second time.
        const auto identity = fileSystem_.IdentityOf(canonical);
        if (identity && !entered_.insert({identity->device, identity->inode}).second) return true;
        auto entries = fileSystem_.ListFolder(canonical, [this] { return ReadsOn(); });
        if (result_.wasStopped) return false;
        ++examined_;
        if (!entries) {
            PassBy(folder);
            return true;
        }
        std::erase_if(*entries, [&](const FolderEntry& entry) { return !IsWanted(entry); });
        const auto files = std::ranges::count(*entries, FileKind::Regular, &FolderEntry::kind);
        visitor_.EnterFolder({folder, identity.value_or(FileIdentity{}),
                              static_cast<std::uint64_t>(files),
                              entries->size() - static_cast<std::size_t>(files)});
        return TakeFiles(folder, *entries) && EnterSubfolders(folder, canonical, *entries);
    }

    [[nodiscard]] bool GoesOn() {
        result_.wasStopped = !visitor_.GoesOn();
        result_.cutShort = result_.wasStopped;
        return !result_.wasStopped;
    }

    /// Asked for every entry of a folder, of which there may be very many.
    [[nodiscard]] bool ReadsOn() {
        if (clock_.Now() - lastAsked_ < AskedEvery) return true;
        const bool goesOn = GoesOn();
        lastAsked_ = clock_.Now();
        return goesOn;
    }

    void PassBy(const std::string& unreadableFolder) {
        ++result_.unreadable;
        visitor_.MeetUnreadableFolder(unreadableFolder);
    }

    [[nodiscard]] bool IsWanted(const FolderEntry& entry) const {
        if (entry.kind == FileKind::Regular) return MatchesPattern(entry.name, request_.pattern);
        return entry.kind == FileKind::Folder;
    }

    bool TakeFiles(const std::string& folder, const std::vector<FolderEntry>& entries) {
        for (const FolderEntry& entry : entries) {
            if (entry.kind != FileKind::Regular) continue;
            const std::string path = folder + entry.name;
            ++result_.files;
            if (request_.addsUpSizes) {
                if (const auto info = fileSystem_.Info(path)) {
                    result_.totalBytes += info->lengthBytes;
                }
            }
            visitor_.MeetFile(path);
            if (request_.limit != 0 && result_.files == request_.limit) {
                result_.cutShort = true;
                return false;
            }
            if (!GoesOn()) return false;
        }
        return true;
    }

    bool EnterSubfolders(const std::string& folder, const std::string& canonical,
                         const std::vector<FolderEntry>& entries) {
        if (!request_.withSubfolders) return true;
        for (const FolderEntry& entry : entries) {
            if (entry.kind != FileKind::Folder) continue;
            const std::string path = WithTrailingSeparator(folder + entry.name);
            const std::string canonicalPath = WithTrailingSeparator(canonical + entry.name);
            if (forbidden_.NameOf(canonicalPath)) {
                visitor_.MeetProhibitedFolder(path);
                continue;
            }
            if (!GoesOn() || !Enter(path, canonicalPath)) return false;
        }
        return true;
    }

    FileSystem& fileSystem_;
    const Clock& clock_;
    const WalkRequest& request_;
    WalkVisitor& visitor_;
    ForbiddenFolders forbidden_;
    WalkResult result_;
    std::uint64_t examined_ = 0;
    std::chrono::milliseconds lastAsked_ = clock_.Now();
    std::set<std::pair<std::uint64_t, std::uint64_t>> entered_;
};

} // namespace

WalkResult WalkFolder(const Machine& machine, const WalkRequest& request, WalkVisitor& visitor) {
    return Walk(machine, request, visitor).Run();
}

std::string UnreadableNote(const WalkResult& walked) {
    if (walked.unreadable == 0) return {};
    return "\r\n(" +
           (walked.unreadable == 1 ? "One folder"
                                   : std::to_string(walked.unreadable) + " folders") +
           " could not be read.)";
}

} // namespace zr5
