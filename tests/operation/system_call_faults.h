#pragma once

// Faults below the file system's interface: the linker leads the program's calls of read, write,
// fallocate, fdatasync, fsync, ftruncate and sync_file_range through here (see
// tests/CMakeLists.txt).

namespace zr5::test {

enum class SystemCallFault {
    Interrupted, ///< by a signal, before anything was done (EINTR)
    Short,       ///< reading and writing move half of what was asked for, at least one byte
    LostWrite,   ///< sync_file_range tells of a failed writing, as it does only once (EIO)
};

/// The `number`-th call to which it can happen from now on meets with `fault`.
void ArmSystemCallFault(SystemCallFault fault, unsigned number);
/// No call does any more. Whether one has.
[[nodiscard]] bool DisarmSystemCallFault();

} // namespace zr5::test
