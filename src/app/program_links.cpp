#include "app/program_links.h"

#include "app/shutdown.h"
#include "app/web_link.h"
#include "util/paths.h"

#include <utility>

namespace zr5 {

ProgramLinks::ProgramLinks(const ProgramParts& program, const std::string& executablePath,
                           std::string nextRunSetupPath)
    : program_(program),
      manualAddress_(FileAddress(SplitPath(executablePath).folder + "manual/index.html")),
      nextRunSetupPath_(std::move(nextRunSetupPath)) {}

void ProgramLinks::OpenManual() {
    OpenWebLink(program_.user, manualAddress_);
}

void ProgramLinks::OpenMakerSite() {
    OpenManual();
}

bool ProgramLinks::Quit(const std::string& quitCaption) {
    return QuitProgram(program_, nextRunSetupPath_, quitCaption);
}

} // namespace zr5
