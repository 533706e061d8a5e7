#pragma once

// What a running operation works with: what to do, which files, and the machine.

#include "keys/current_key.h"
#include "libs/cipher/cipher_engine.h"
#include "libs/filekit/file_kit.h"
#include "libs/system/clock.h"
#include "libs/system/file_system.h"
#include "operation/operation_journal.h"
#include "setup/operation_setup.h"
#include "util/user_port.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zr5 {

/// One line of the work list: a file, or the boundary at which a folder begins.
struct WorkItem {
    enum class Kind { File, Folder, ProhibitedFolder, UnreadableFolder };
    Kind kind = Kind::File;
    std::string inputPath;  ///< of the file or folder
    std::string outputPath; ///< of the file; equal to inputPath in place
    /// Of the file when the list was made: for showing progress, never for deciding.
    std::uint64_t lengthBytes = 0;
};

/// A snapshot of what is to be processed, in order.
using WorkList = std::vector<WorkItem>;

/// The machine and the user, as the operation room reaches them.
struct Machine {
    FileSystem& fileSystem;
    CipherEngine& engine;
    FileKit& fileKit;
    UserPort& user;
    const Clock& clock;
    std::string executablePath;   ///< real path of the running program
    std::string journalPath = {}; ///< where results are noted; empty: nowhere
};

/// One operation; setup and key stay as they are while it runs.
struct OperationContext {
    const OperationSetup& setup;
    const CurrentKey& key;
    const WorkList& list;
    Machine& machine;
    OperationJournal* journal = nullptr; ///< open; null: results are not noted
    /// Whether a file that is to be decrypted may turn out not to be encrypted.
    bool mayMeetPlaintext = true;
};

} // namespace zr5
