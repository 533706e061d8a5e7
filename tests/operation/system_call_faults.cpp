#include "operation/system_call_faults.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <sys/types.h>

namespace zr5::test {
namespace {

std::optional<SystemCallFault> armed;
unsigned callsUntilFault = 0;

bool Meets(SystemCallFault fault) {
    if (armed != fault || --callsUntilFault != 0) return false;
    armed.reset();
    return true;
}

bool IsInterrupted() {
    if (!Meets(SystemCallFault::Interrupted)) return false;
    errno = EINTR;
    return true;
}

std::size_t Moved(std::size_t asked) {
    return asked > 1 && Meets(SystemCallFault::Short) ? asked / 2 : asked;
}

} // namespace

void ArmSystemCallFault(SystemCallFault fault, unsigned number) {
    armed = fault;
    callsUntilFault = number;
}

bool DisarmSystemCallFault() {
    const bool met = !armed;
    armed.reset();
    return met;
}

} // namespace zr5::test

// The names are the linker's (option --wrap).
// NOLINTBEGIN(bugprone-reserved-identifier, cert-dcl37-c, cert-dcl51-cpp,
// readability-identifier-naming)
extern "C" {
ssize_t __real_read(int file, void* into, size_t count);
ssize_t __real_write(int file, const void* from, size_t count);
int __real_fallocate(int file, int mode, off_t offset, off_t length);
int __real_fdatasync(int file);
int __real_fsync(int file);
int __real_ftruncate(int file, off_t length);
int __real_sync_file_range(int file, off_t offset, off_t length, unsigned flags);

ssize_t __wrap_read(int file, void* into, size_t count) {
    return zr5::test::IsInterrupted() ? -1 : __real_read(file, into, zr5::test::Moved(count));
}
ssize_t __wrap_write(int file, const void* from, size_t count) {
    return zr5::test::IsInterrupted() ? -1 : __real_write(file, from, zr5::test::Moved(count));
}
int __wrap_fallocate(int file, int mode, off_t offset, off_t length) {
    return zr5::test::IsInterrupted() ? -1 : __real_fallocate(file, mode, offset, length);
}
int __wrap_fdatasync(int file) {
    return zr5::test::IsInterrupted() ? -1 : __real_fdatasync(file);
}
int __wrap_fsync(int file) {
    return zr5::test::IsInterrupted() ? -1 : __real_fsync(file);
}
int __wrap_sync_file_range(int file, off_t offset, off_t length, unsigned flags) {
    if (!zr5::test::Meets(zr5::test::SystemCallFault::LostWrite))
        return __real_sync_file_range(file, offset, length, flags);
    errno = EIO;
    return -1;
}
int __wrap_ftruncate(int file, off_t length) {
    return zr5::test::IsInterrupted() ? -1 : __real_ftruncate(file, length);
}
}
// NOLINTEND(bugprone-reserved-identifier, cert-dcl37-c, cert-dcl51-cpp,
// readability-identifier-naming)
