#pragma once

// What the main window asks of the rest of the program. It holds no rule itself.

#include "files/folder_walk.h"

#include <functional>
#include <string>

namespace zr5 {

/// The operation and its report.
class MainWindowActions {
  public:
    virtual ~MainWindowActions() = default;
    /// "Perform": checks, confirmation, and the run on the report screen. The input is known to
    /// be there. Returns when the run has ended.
    virtual void Perform() = 0;
    /// "List files"; boxes have `buttonCaption` as their title. Returns when the listing has ended.
    virtual void ListFiles(const std::string& buttonCaption) = 0;
    [[nodiscard]] virtual bool ReportIsEmpty() = 0;
    /// Shows the report screen with its caret at the end of the text.
    virtual void ShowReport() = 0;
    /// Runs `work`, which lets the interface react, with the main window out of use. What it is
    /// handed tells it when `RequestStop` was called.
    virtual void WhileOutOfUse(const std::function<void(const StopAsked&)>& work) = 0;
    /// The running operation is to stop after the file it is working on.
    virtual void RequestStop() = 0;
};

/// The program around the window.
class ProgramActions {
  public:
    virtual ~ProgramActions() = default;
    virtual void OpenManual() = 0;
    virtual void OpenMakerSite() = 0;
    /// The steps of quitting; false when the user wants to stay. Boxes have `quitCaption` as
    /// their title.
    [[nodiscard]] virtual bool Quit(const std::string& quitCaption) = 0;
};

} // namespace zr5
