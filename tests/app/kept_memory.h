#pragma once

// Makes what is given back to the heap stay as it is, so that a search finds every secret that was
// given back without being wiped, whatever the heap would have put over it by chance.

namespace zr5::test {

/// From here on this process gives no memory back. For a short-lived child only.
void KeepFreedMemory() noexcept;

} // namespace zr5::test
