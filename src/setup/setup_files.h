#pragma once

// Where setup files are read: start-up loads the setup-for-next-run file through here.

#include <string>

namespace zr5 {

class SetupFiles {
  public:
    virtual ~SetupFiles() = default;
    /// Reads a setup file into the program's setup; false when it cannot be read or understood.
    [[nodiscard]] virtual bool LoadSetup(const std::string& path) = 0;
};

} // namespace zr5
