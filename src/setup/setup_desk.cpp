#include "setup/setup_desk.h"

#include "setup/field_rules.h"
#include "util/display.h"
#include "util/paths.h"
#include "util/text.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace zr5 {

MessageBox PromptBox(Prompt prompt, InputSource source) {
    const std::string word = source == InputSource::FilesInAFolder ? "folder" : "file";
    const auto box = [](const std::string& title, const std::string& text) {
        return Notice(text, title, BoxIcon::Information);
    };
    switch (prompt) {
    case Prompt::MissingInput:
        return box("Input " + word, "Please specify input " + word + ".");
    case Prompt::SpecifyInput:
        return box("Specify " + word, "Please specify the input " + word + ".");
    case Prompt::SpecifyOutput:
        return box("Specify " + word, "Please specify the output " + word + ".");
    case Prompt::ChooseAnew:
        return box("Specify " + word, "The output of this setup does not fit its other options.\r\n"
                                      "Please select the input " +
                                          word + " anew, or clear the setup.");
    }
    std::abort();
}

SetupDesk::SetupDesk(UserPort& user, FileSystem& fileSystem, ProgramTextLookup programText)
    : user_(user), fileSystem_(fileSystem), programText_(std::move(programText)) {
    state_.setup.MaxNumFiles = MaxNumFilesUpper;
}

void SetupDesk::ResetSetup() {
    OperationSetup setup;
    setup.SubfolderAnswer = false;
    TakeOver(std::move(setup));
}

void SetupDesk::TakeOver(OperationSetup setup) {
    state_.setup = std::move(setup);
    MeasureInput();
}

void SetupDesk::SelectFunction(Direction function) {
    state_.setup.Operation = function;
}

void SetupDesk::SelectInputMode(InputSource source) {
    OperationSetup& setup = state_.setup;
    if (setup.InputMode == source) return;
    setup.InputMode = source;
    if (source == InputSource::FilesInAFolder) setup.OutputMode = OutputTarget::OverwriteInput;
    ClearInputChoice();
}

void SetupDesk::SelectOutputMode(OutputTarget target) {
    OperationSetup& setup = state_.setup;
    setup.OutputMode = target;
    if (target == OutputTarget::OverwriteInput && InputIsChosen())
        SetOutputFile(setup.Folder[InputSide], setup.FileName[InputSide]);
}

bool SetupDesk::AnswerSubfolders(bool include) {
    if (state_.setup.Folder[InputSide].empty()) {
        user_.Ask(Notice("Please select an input folder.", "Subfolders?", BoxIcon::Information));
        return false;
    }
    if (include && !HasSubfolders()) {
        state_.setup.SubfolderAnswer = false;
        user_.Ask(Notice(DisplayName(state_.setup.Folder[InputSide]) + " has no subfolders.",
                         "Subfolders?", BoxIcon::Information));
        return false;
    }
    state_.setup.SubfolderAnswer = include;
    return true;
}

bool SetupDesk::HasSubfolders() {
    const auto canonical = fileSystem_.CanonicalPath(state_.setup.Folder[InputSide]);
    const auto entries = canonical ? fileSystem_.ListFolder(*canonical, {}) : std::nullopt;
    return entries &&
           std::ranges::find(*entries, FileKind::Folder, &FolderEntry::kind) != entries->end();
}

bool SetupDesk::LeaveFilePattern(std::string_view text) {
    OperationSetup& setup = state_.setup;
    std::string pattern(Trim(text));
    if (pattern.empty()) pattern = AllFilesPattern;
    if (pattern == setup.FilePattern) return true;
    if (HasForbiddenCharacter(pattern, Wildcards::Allowed)) {
        user_.Ask(RefusedPatternBox(pattern));
        return false;
    }
    setup.FilePattern = pattern;
    if (setup.InputMode == InputSource::FilesInAFolder && !setup.Folder[InputSide].empty()) {
        setup.FileName = {pattern, pattern};
        setup.FilesCaption[InputSide] = PatternLabelFor(pattern, PatternLabel::AfterEdit);
    }
    return true;
}

bool SetupDesk::LeaveMaxNumFiles(std::string_view text) {
    if (Trim(text) == std::to_string(state_.setup.MaxNumFiles)) return true;
    const auto accepted = TypedMaxNumFiles(text);
    if (accepted) {
        state_.setup.MaxNumFiles = *accepted;
    } else {
        user_.Ask(RefusedMaxNumFilesBox());
    }
    return accepted.has_value();
}

void SetupDesk::SetInputFile(const std::string& folder, const std::string& name) {
    OperationSetup& setup = state_.setup;
    setup.Folder[InputSide] = folder;
    setup.FileName[InputSide] = name;
    setup.FolderCaption[InputSide] = LabelFor(folder);
    setup.FilesCaption[InputSide] = LabelFor(name);
    const bool follows = setup.OutputMode == OutputTarget::OverwriteInput;
    SetOutputFile(follows ? folder : "", follows ? name : "");
    MeasureInput();
}

void SetupDesk::SetOutputFile(const std::string& folder, const std::string& name) {
    OperationSetup& setup = state_.setup;
    setup.Folder[OutputSide] = folder;
    setup.FileName[OutputSide] = name;
    setup.FolderCaption[OutputSide] = LabelFor(folder);
    setup.FilesCaption[OutputSide] = LabelFor(name);
    WriteEqualityNotes(setup, programText_);
}

void SetupDesk::SetInputFolder(const std::string& folder) {
    OperationSetup& setup = state_.setup;
    const std::string pattern = setup.EffectivePattern();
    setup.OutputMode = OutputTarget::OverwriteInput;
    setup.Folder[InputSide] = folder;
    setup.FileName[InputSide] = pattern;
    setup.FolderCaption[InputSide] = LabelFor(folder);
    setup.FilesCaption[InputSide] = PatternLabelFor(pattern, PatternLabel::AfterFolderChoice);
    SetOutputFile(folder, pattern);
}

void SetupDesk::Ask(Prompt prompt) {
    if (startupDone_) user_.Ask(PromptBox(prompt, Setup().InputMode));
}

bool SetupDesk::ReadyToPerform() {
    if (!ReadyToCheck()) return false;
    if (CheckLabels() == 0) return true;
    const bool outputIsChosenApart = Setup().InputMode == InputSource::SingleFile &&
                                     Setup().OutputMode == OutputTarget::SeparateOutput;
    Ask(outputIsChosenApart ? Prompt::SpecifyOutput : Prompt::ChooseAnew);
    return false;
}

bool SetupDesk::ReadyToCheck() {
    if (Setup().Folder[InputSide].empty() || Setup().FileName[InputSide].empty()) {
        Ask(Prompt::MissingInput);
        return false;
    }
    RewriteLabels();
    const int disagreement = CheckLabels();
    const bool isOfInput = disagreement < 0 && disagreement >= -4;
    if (isOfInput) Ask(Prompt::SpecifyInput);
    return !isOfInput;
}

void SetupDesk::SetOperationRunning(bool running) {
    operationRunning_ = running;
    if (!running) MeasureInput();
}

int SetupDesk::CheckLabels() const {
    return CheckConsistency(Setup(), programText_);
}

void SetupDesk::RewriteLabels() {
    RewriteCaptions(state_.setup, programText_);
}

MainWindowView SetupDesk::Refresh() {
    WriteEqualityNotes(state_.setup, programText_);
    MainWindowView view = DeriveMainWindow(state_);
    state_.listFilesWasEnabled =
        Setup().InputMode == InputSource::FilesInAFolder && InputIsChosen();
    return view;
}

void SetupDesk::ClearInputChoice() {
    OperationSetup& setup = state_.setup;
    setup.Folder = {};
    setup.FileName = {};
    setup.FolderCaption = {};
    setup.FilesCaption = {};
    setup.SubfolderAnswer.reset();
    MeasureInput();
}

void SetupDesk::MeasureInput() {
    state_.inputLengthBytes.reset();
    if (Setup().InputMode != InputSource::SingleFile || Setup().FilePath(InputSide).empty()) return;
    if (const auto info = fileSystem_.Info(Setup().FilePath(InputSide)))
        state_.inputLengthBytes = info->lengthBytes;
}

} // namespace zr5
