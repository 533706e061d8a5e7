#pragma once

// What must be right before an operation starts, checked in a fixed order; each refusal is a
// message and changes nothing.

#include "operation/confirmation.h"
#include "operation/work_list.h"

#include <optional>
#include <string>

namespace zr5 {

/// What the user reads when a file must never become an output: the keyfile in use, a copy of it,
/// this program, or a file in its own folder. Nothing for any other file.
[[nodiscard]] std::optional<MessageBox>
ProtectedOutputBox(const std::string& outputPath, const CurrentKey& key, const Machine& machine);

/// What the user has agreed to.
struct Consent {
    std::optional<FileInfo> replaceable;     ///< the output that was there already
    std::optional<FileIdentity> inputFolder; ///< in which the input lies
    bool leavesOut = false; ///< the files that look as if they were done (`LooksDone`)
};

/// Set when the operation may start: the output is not the input, the user does not shrink from
/// anti-virus programs, there is something to do and not too much, there is a key, an output is
/// chosen that is not protected, the user confirms, and there is room for the result. A check has
/// no output and needs no confirmation. Nothing once `stopped`, or when the user stops the
/// counting.
[[nodiscard]] std::optional<Consent> MayStart(const OperationSetup& setup, const CurrentKey& key,
                                              Machine& machine, ConfirmationView& view,
                                              const StopAsked& stopped);

} // namespace zr5
