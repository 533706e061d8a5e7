#pragma once

// Who made this program and what it is called: for window captions, the folder of the
// setup-for-next-run file and the first line of setup files.

namespace zr5 {

inline constexpr const char* MakerName = "Velmora Systems";
inline constexpr const char* ProductName = "Vaultline ZR5";
/// Major version, ".", minor version, "0".
inline constexpr const char* VersionText = "15.00";
/// The setup-for-next-run file, in the maker's folder.
inline constexpr const char* NextRunSetupName = "zr5e.opn";
/// Beside it: what is known of a file that is being worked on.
inline constexpr const char* JournalName = "zr5e.journal";

} // namespace zr5
