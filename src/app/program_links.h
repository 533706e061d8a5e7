#pragma once

// The window's doors to the program around it: the manual, the maker's page, and the way out.

#include "app/startup.h"
#include "ui/main_window_actions.h"

#include <string>

namespace zr5 {

class ProgramLinks final : public ProgramActions {
  public:
    ProgramLinks(const ProgramParts& program, const std::string& executablePath,
                 std::string nextRunSetupPath);

    void OpenManual() override;
    /// The maker's page is the manual that comes with the program.
    void OpenMakerSite() override;
    [[nodiscard]] bool Quit(const std::string& quitCaption) override;

  private:
    ProgramParts program_;
    std::string manualAddress_;
    std::string nextRunSetupPath_;
};

} // namespace zr5
