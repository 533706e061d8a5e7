#pragma once

// Saving what the program shows as a file: which name, what is never overwritten, and what went
// wrong.

#include "libs/system/file_system.h"
#include "libs/system/random.h"
#include "util/user_port.h"

#include <cstddef>
#include <span>
#include <string>

namespace zr5 {

class ReportScreen;

/// Asks for a name (".png" is added to one without) and writes `png` there. An existing file is
/// replaced only if the user says so, and `pictured`, the file that the picture is of, never is.
/// Every failure is named in a box.
void SavePicture(FileSystem& fileSystem, RandomSource& random, UserPort& user,
                 const std::string& pictured, std::span<const std::byte> png);

/// The same for the text of a report, as UTF-8 with the line ends of the system. Says first if it
/// holds a key. Whether it was saved.
bool SaveReport(FileSystem& fileSystem, RandomSource& random, UserPort& user,
                const ReportScreen& report);

} // namespace zr5
