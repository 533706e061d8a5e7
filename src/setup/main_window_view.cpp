#include "setup/main_window_view.h"

#include "setup/labels.h"
#include "setup/reliability_condition.h"
#include "setup/wording.h"
#include "util/display.h"
#include "util/numbers.h"

#include <array>

namespace zr5 {
namespace {

struct Caption {
    const char* name;
    const char* text;
};

/// Captions that never change, and those that stand until the first refresh.
constexpr Caption Captions[] = {
    {"lblFunction", "Operation:"},
    {"optEncrypt", "Encrypt"},
    {"optDecrypt", "Decrypt"},
    {"lblInput", "Input:"},
    {"optSingleFile", "Single file"},
    {"optFilesInAFolder", "Files in a folder"},
    {"cmdSingleFile(0)", "Select input file"},
    {"cmdSingleFile(1)", "Specify output file"},
    {"lblOutput", "Output:"},
    {"optOverwriteInputFiles", "Overwrite input file"},
    {"optWriteToSeparateOutputFiles", "Write to a different file"},
    {"cmdSpecifyDirectory", "Select input folder"},
    {"lblIncludeAllSubfolders", "Include all subfolders?"},
    {"optSubfolders", "Yes"},
    {"optNotSubfolders", "No"},
    {"lblIncludeFilesMatching", "Include only files whose names match this pattern: "},
    {"lblMaxNumFiles", "Current maximum number of files: "},
    {"lblInputFolder", "Input folder:"},
    {"lblOutputFolder", "Output folder:"},
    {"lblSetupFilename", "Setup file:"},
    {"cmdSpecifyFiles(0)", "Input file"},
    {"cmdSpecifyFiles(1)", "Output file"},
    {"cmdKeyboardWithDisplay", "Type key (with display)"},
    {"cmdKeyboardWithoutDisplay", "Type key (without display)"},
    {"cmdKeyFile(0)", "Get key from keyfile"},
    {"cmdKeyFile(1)", "Create random keyfile"},
    {"cmdEraseKey", "Erase key"},
    {"cmdDontSpecifyKeyNow", "Not now"},
    {"cmdNoRandomnessReport", "Not now"},
    {"cmdRandomnessReport", "Randomness report"},
    {"cmdReportScreen", "View report screen"},
    {"cmdSetup", "Setup"},
    {"cmdHelp(0)", "Online user manual"},
    {"cmdHelp(1)", "Help on startup"},
    {"cmdQuit", "Quit"},
    {"cmdLoadSetup", "Load setup"},
    {"cmdSaveSetup", "Save setup"},
    {"cmdClearSetup", "Clear setup"},
    {"cmdKeepSetup", "Not now"},
    {"cmdSaveSetupForNextRun", "Save setup for next run"},
    {"cmdSaveSetupAsOperationFile", "Save setup as operation file"},
    {"cmdDontSaveSetup", "Not now"},
    {"lblPerformingReliabilityTest", "Performing reliability test ..."},
};

MainWindowView WithFixedCaptions() {
    MainWindowView view;
    for (const Caption& caption : Captions)
        view[caption.name].text = caption.text;
    view["lblIntro"].text =
        "Use this program to encrypt or decrypt a single file, all or some files in a folder, "
        "or all or some files\r\nin a folder and all its subfolders.  "
        "For further advice click on the '" +
        *view["cmdHelp(0)"].text + "' button.";
    view["lblPerformingReliabilityTest"].visible = false;
    return view;
}

void DeriveWording(const OperationSetup& setup, MainWindowView& view) {
    const auto verb = [&](std::string_view word) { return VerbForm(setup.Operation, word); };
    view["cmdKeyFrom"].text = "Specify " + verb("encryption") + " key";
    view["cmdDoIt"].text = PerformCaption(PurposeOf(setup));
    ControlView& check = view["cmdCheckFiles"];
    check.text = PerformCaption(Purpose::Check);
    check.enabled = check.visible = setup.Operation == Direction::Decrypt;
    view["cmdListFiles"].text = "List files to be " + verb("encrypted");
    view["lblFilesInAFolder"].text = IsReliabilityTest(setup)
                                         ? "Copies of the files will be tested."
                                         : "Files will be " + verb("encrypted") + " 'in place'.";
    view["lblInputFile"].text = InputOutputFileWord(InputSide, setup.InputMode) + ":";
    view["lblOutputFile"].text = InputOutputFileWord(OutputSide, setup.InputMode) + ":";
}

void DeriveOptions(const OperationSetup& setup, MainWindowView& view) {
    const auto show = [&](std::string_view name, bool selected) {
        ControlView& option = view[std::string(name)];
        option.checked = selected;
        option.bold = selected;
    };
    show("optEncrypt", setup.Operation == Direction::Encrypt);
    show("optDecrypt", setup.Operation == Direction::Decrypt);
    show("optSingleFile", setup.InputMode == InputSource::SingleFile);
    show("optFilesInAFolder", setup.InputMode == InputSource::FilesInAFolder);
    show("optOverwriteInputFiles", setup.OutputMode == OutputTarget::OverwriteInput);
    show("optWriteToSeparateOutputFiles", setup.OutputMode == OutputTarget::SeparateOutput);
    show("optSubfolders", setup.SubfolderAnswer == true);
    show("optNotSubfolders", setup.SubfolderAnswer == false);
}

void DeriveFrames(Pane pane, MainWindowView& view) {
    const bool working = pane == Pane::Menu;
    view["fraMain"].enabled = working;
    const auto show = [&](std::string_view name, Pane which) {
        ControlView& frame = view[std::string(name)];
        frame.enabled = frame.visible = pane == which;
    };
    show("fraMenu", Pane::Menu);
    view["fraMenu"].visible = working || pane == Pane::Waiting;
    show("fraSetup", Pane::Setup);
    show("fraSaveSetup", Pane::SaveSetup);
    show("fraKey", Pane::Key);
    show("fraRandomnessFiles", Pane::Randomness);
    for (const char* name : {"lblKeyFrom(0)", "lblKeyFrom(1)", "picKeyFrom"})
        view[name].visible = pane != Pane::Key;
}

void DeriveChoices(const MainWindowState& state, MainWindowView& view) {
    const OperationSetup& setup = state.setup;
    const bool single = setup.InputMode == InputSource::SingleFile;
    const bool inputShown = !setup.FolderCaption[InputSide].empty();
    view["fraOutput"].visible = single;
    view["fraSelectFile"].enabled = single;
    view["cmdSingleFile(0)"].enabled = single;
    view["cmdSingleFile(1)"].enabled = view["cmdSpecifyFiles(1)"].enabled =
        inputShown && single && setup.OutputMode == OutputTarget::SeparateOutput;
    view["cmdRandomnessReport"].enabled = inputShown && single;
    view["fraFilesInAFolder"].enabled = !single;
    view["cmdSpecifyDirectory"].enabled = !single;
    view["cmdListFiles"].enabled = view["cmdSpecifyFiles(0)"].enabled = inputShown && !single;
    view["lblFilesInAFolder"].enabled = state.listFilesWasEnabled;
    view["lblFilesInAFolder"].visible = !single;

    view["txbFilePattern"].text = setup.FilePattern;
    view["txbMaxNumFiles"].text = std::to_string(setup.MaxNumFiles);
}

void DeriveLabels(const MainWindowState& state, MainWindowView& view) {
    const OperationSetup& setup = state.setup;
    for (const std::size_t i : {InputSide, OutputSide}) {
        const std::string index = "(" + std::to_string(i) + ")";
        ControlView& folder = view["lblFolder" + index];
        folder.text = setup.FolderCaption[i];
        folder.toolTip = ToolTipFor(setup.FolderCaption[i], setup.Folder[i]);
        ControlView& files = view["lblFiles" + index];
        files.text = setup.FilesCaption[i];
        files.toolTip = setup.InputMode == InputSource::FilesInAFolder
                            ? PatternToolTipFor(setup.FilesCaption[i], setup.EffectivePattern())
                            : ToolTipFor(setup.FilesCaption[i], setup.FileName[i]);
    }
    for (const char* name : {"lblFolder(1)", "lblFiles(1)"}) {
        ControlView& label = view[name];
        label.bold = !label.text->empty() && !label.text->starts_with(EqualityNoteStart);
    }
    ControlView& setupFile = view["lblFiles(2)"];
    setupFile.text = LabelFor(setup.SetupFileName);
    setupFile.toolTip = ToolTipFor(*setupFile.text, setup.SetupFileName);
    view["lblSetupFilename"].visible = setupFile.visible = !setup.SetupFileName.empty();

    ControlView& size = view["lblSize"];
    size.text = "Size:";
    size.visible = state.inputLengthBytes.has_value();
    if (size.visible) {
        const std::uint64_t bytes = *state.inputLengthBytes;
        *size.text += " " + WithThousands(bytes) + (bytes == 1 ? " byte" : " bytes");
    }
}

} // namespace

MainWindowView DeriveMainWindow(const MainWindowState& state) {
    MainWindowView view = WithFixedCaptions();
    DeriveWording(state.setup, view);
    DeriveOptions(state.setup, view);
    DeriveFrames(state.pane, view);
    DeriveChoices(state, view);
    DeriveLabels(state, view);
    return view;
}

} // namespace zr5
