#pragma once

// The desk at which an operation is composed: owns the one OperationSetup of the run and has
// one call for each thing that the user can do to it in the main window.

#include "libs/system/file_system.h"
#include "setup/labels.h"
#include "setup/main_window_view.h"
#include "util/user_port.h"

#include <string>
#include <string_view>
#include <utility>

namespace zr5 {

/// The prompts that lead the user to the next missing choice.
enum class Prompt {
    MissingInput,  ///< "Please specify input file."
    SpecifyInput,  ///< "Please specify the input file."
    SpecifyOutput, ///< "Please specify the output file."
    ChooseAnew,    ///< the output does not fit, and no control of the window is for it
};

/// The prompt's box; "file" becomes "folder" when the input is a folder.
[[nodiscard]] MessageBox PromptBox(Prompt prompt, InputSource source);

class SetupDesk {
  public:
    SetupDesk(UserPort& user, FileSystem& fileSystem, ProgramTextLookup programText);

    [[nodiscard]] const OperationSetup& Setup() const { return state_.setup; }
    /// An input file or folder is shown.
    [[nodiscard]] bool InputIsChosen() const { return !Setup().FolderCaption[InputSide].empty(); }

    /// "Clear setup" but for the key.
    void ResetSetup();
    /// Takes over a whole setup, captions included, without any reaction.
    void TakeOver(OperationSetup setup);

    /// The operation file last loaded or saved, shown beside "Setup file:".
    void SetSetupFileName(std::string path) { state_.setup.SetupFileName = std::move(path); }

    void SelectFunction(Direction function);
    /// A change clears the input choice; folder operations always work in place.
    void SelectInputMode(InputSource source);
    /// Overwriting makes the output the input; a different file keeps what stands.
    void SelectOutputMode(OutputTarget target);
    /// Refused with a box while no input folder is chosen, and yes where there is no subfolder;
    /// false then.
    bool AnswerSubfolders(bool include);

    /// A text box is left. False when its text was refused, which a box has explained: the value in
    /// force stays.
    bool LeaveFilePattern(std::string_view text);
    bool LeaveMaxNumFiles(std::string_view text);

    /// Folder (with its separator) and name of the single input file. While overwriting the
    /// output follows; else it is empty until it is chosen anew.
    void SetInputFile(const std::string& folder, const std::string& name);
    void SetOutputFile(const std::string& folder, const std::string& name);
    /// The folder (with its separator) of a folder operation, which works in place.
    void SetInputFolder(const std::string& folder);

    /// Changes what stands in the place of the menu.
    void Show(Pane pane) { state_.pane = pane; }
    [[nodiscard]] Pane ShownPane() const { return state_.pane; }

    /// Set while a double-click's second release may still arrive from a file picker that the
    /// setup buttons opened.
    void SetDialogJustClosed(bool justClosed) { dialogJustClosed_ = justClosed; }
    [[nodiscard]] bool DialogJustClosed() const { return dialogJustClosed_; }

    /// From here on prompts are shown.
    void FinishStartup() { startupDone_ = true; }
    [[nodiscard]] bool StartupDone() const { return startupDone_; }
    void Ask(Prompt prompt);

    /// Whether an operation can begin with its checks: input and output are there and agree with
    /// the labels, which are written anew first. If not, a prompt says what is missing.
    [[nodiscard]] bool ReadyToPerform();
    /// The same for a check of encrypted files, which has no output.
    [[nodiscard]] bool ReadyToCheck();

    void SetOperationRunning(bool running);
    [[nodiscard]] bool OperationRunning() const { return operationRunning_; }

    /// 0, or the first disagreement between setup and labels (see labels.h).
    [[nodiscard]] int CheckLabels() const;
    /// Writes the labels anew from the setup.
    void RewriteLabels();

    /// What the window has to show now.
    [[nodiscard]] MainWindowView Refresh();

  private:
    void ClearInputChoice();
    [[nodiscard]] bool HasSubfolders();
    void MeasureInput();

    UserPort& user_;
    FileSystem& fileSystem_;
    ProgramTextLookup programText_;
    MainWindowState state_;
    bool dialogJustClosed_ = false;
    bool startupDone_ = false;
    bool operationRunning_ = false;
};

} // namespace zr5
