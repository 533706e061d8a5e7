#pragma once

// The rules of `frmSpecifyInputFiles`: which files of the chosen folder are meant.

#include "files/specify_files.h"
#include "setup/setup_desk.h"

namespace zr5 {

/// For a folder operation whose folder is chosen. The options stand for subfolder switch and
/// pattern of the setup.
class SpecifyInputFiles final : public SpecifyFiles {
  public:
    static constexpr std::size_t AllFiles = 0;
    static constexpr std::size_t AllFilesAndSubfolders = 1;

    SpecifyInputFiles(UserPort& user, SetupDesk& desk);

    [[nodiscard]] std::string Title() const override;
    [[nodiscard]] std::string Subject() const override;
    [[nodiscard]] std::string Caption(std::size_t option) const override;
    [[nodiscard]] std::string Example() const override;

  protected:
    [[nodiscard]] bool Store(std::size_t option, const std::string& extension) override;

  private:
    SetupDesk& desk_;
};

} // namespace zr5
