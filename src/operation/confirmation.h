#pragma once

// The sentences with which the user confirms an operation before it starts.

#include "keys/current_key.h"
#include "operation/work_list.h"
#include "setup/operation_setup.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zr5 {

/// What `frmConfirmOperation` shows. UTF-8, one paragraph a field; empty ones are left out.
struct Confirmation {
    std::string operation;             ///< which operation, and the key's checksum
    std::string input;                 ///< which files, and how many
    std::string output;                ///< where the result goes
    std::vector<std::string> warnings; ///< of what may not be wanted
    /// The caption of `chkLeaveOut`, with which the user has the files left out that look as if
    /// they were done; empty when it is not offered.
    std::string leaveOut;
    std::string reminder; ///< to list the files first; for folders
    std::string question;
};

/// `outputIsThere`: a separate output exists already.
[[nodiscard]] Confirmation ConfirmationFor(const OperationSetup& setup, const CurrentKey& key,
                                           const FileCount& count, bool outputIsThere);

enum class ConfirmationAnswer { No, Yes, YesLeavingOut };

/// The window that asks. Anything but Yes is no.
class ConfirmationView {
  public:
    virtual ~ConfirmationView() = default;
    [[nodiscard]] virtual ConfirmationAnswer Confirm(const Confirmation& confirmation) = 0;
};

} // namespace zr5
