#pragma once

// Which files an operation is about: counted before it is confirmed, listed when it begins.

#include "files/folder_walk.h"
#include "operation/listing_summary.h"
#include "setup/operation_setup.h"
#include "util/machine.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zr5 {

struct FileCount {
    std::uint64_t files = 0;
    std::uint64_t doneAlready = 0; ///< `LooksDone`
    std::uint64_t doneBytes = 0;   ///< of those files
    /// To be worked on in place, for which they have the wrong extensions: they are left alone.
    std::uint64_t neverInPlace = 0;
    /// The first disk met, of those that hold the files, on which overwriting may not reach all.
    DiskKind disk = DiskKind::Plain;
    std::string unreadableNote; ///< of the walk (`UnreadableNote`)
    bool wasStopped = false;    ///< by the user: there may be more
    /// Of all that could be read; nothing when the single file cannot.
    std::optional<std::uint64_t> totalBytes;
};

/// Whether a file looks as if nothing of the operation were left to be done with it: encrypted
/// where it is to be encrypted, not encrypted where it is to be decrypted. No, for one that is
/// empty or cannot be read.
[[nodiscard]] bool LooksDone(Direction operation, FileSystem& fileSystem, const std::string& path);

/// How many files the operation has; counting stops one above the maximum of the setup. It is seen
/// when it takes long, and the user can stop it.
[[nodiscard]] FileCount CountFiles(const OperationSetup& setup, Machine& machine,
                                   const StopAsked& stopped);

/// The walk that finds the files of a folder operation.
[[nodiscard]] WalkRequest WalkRequestFor(const OperationSetup& setup, std::uint64_t limit);

/// One line of the work list: a file, or the boundary at which a folder begins.
struct WorkItem {
    enum class Kind { File, Folder, ProhibitedFolder, UnreadableFolder };
    Kind kind = Kind::File;
    std::string inputPath;  ///< of the file or folder
    std::string outputPath; ///< of the file; equal to inputPath in place and in a check
    /// Of the file when the list was made: for showing progress, never for deciding.
    std::uint64_t lengthBytes = 0;
    FileIdentity identity = {}; ///< of a folder with files: another one's are left alone
};

/// A snapshot of what is to be processed, in order.
class WorkList {
  public:
    void AddFile(std::string inputPath, std::string outputPath, std::uint64_t lengthBytes = 0);
    void AddFolder(WorkItem::Kind kind, std::string path, const FileIdentity& identity = {});

    [[nodiscard]] auto begin() const { return items_.begin(); }
    [[nodiscard]] auto end() const { return items_.end(); }
    [[nodiscard]] std::uint64_t Files() const { return files_; }
    /// The lengths of all files together.
    [[nodiscard]] std::uint64_t TotalBytes() const { return totalBytes_; }

  private:
    std::vector<WorkItem> items_;
    std::uint64_t files_ = 0;
    std::uint64_t totalBytes_ = 0;
};

struct ListedFiles {
    WorkList list;
    std::optional<RandomnessCounts> randomness; ///< of the files of a folder
    bool wasCutShort = false; ///< there are more files than the maximum, or the user stopped it
};

/// The snapshot of what is to be processed: one file, or a walk through the folder with its
/// boundaries and the folders that were passed by, prohibited or unreadable. `counted` is told of
/// every file.
[[nodiscard]] ListedFiles MakeWorkList(const OperationSetup& setup, Machine& machine,
                                       const std::function<void(std::uint64_t files)>& counted,
                                       const StopAsked& stopped);

} // namespace zr5
