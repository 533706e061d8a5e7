#include "setup/setup_desk.h"

#include "setup/labels.h"
#include "setup/wording.h"
#include "support/fixtures.h"

#include <filesystem>

namespace zr5::test {
namespace {

const std::string LongFolder = "/home/someone/Documents/Correspondence with many people/2026/";

OperationSetup SingleFileSetup() {
    OperationSetup setup;
    setup.Folder = {LongFolder, "/out/"};
    setup.FileName = {"letter.txt", "letter.zr5"};
    setup.OutputMode = OutputTarget::SeparateOutput;
    RewriteCaptions(setup, EqualityNotes);
    return setup;
}

OperationSetup FolderSetup(const std::string& pattern) {
    OperationSetup setup;
    setup.InputMode = InputSource::FilesInAFolder;
    setup.Folder = {"/in/", "/in/"};
    setup.FilePattern = pattern;
    setup.FileName = {pattern, pattern};
    RewriteCaptions(setup, EqualityNotes);
    return setup;
}

TEST(Labels, AreShortenedToTheirWidthWithTheWholeInTheToolTip) {
    const std::string label = LabelFor(LongFolder);
    EXPECT_EQ(label.size(), LabelWidth);
    EXPECT_TRUE(label.starts_with("/ho..."));
    EXPECT_EQ(ToolTipFor(label, LongFolder), LongFolder);

    const std::string justFits = "/" + std::string(LabelWidth - 2, 'a') + "/";
    EXPECT_EQ(LabelFor(justFits), justFits);
    EXPECT_EQ(ToolTipFor(justFits, justFits), "");
    EXPECT_EQ(ToolTipFor("Same as input folder", LongFolder), "");
    EXPECT_EQ(LabelFor("caf\xe9.txt"), "caf\\xE9.txt") << "no text: with escapes";
}

TEST(PatternLabel, HasAColonAfterAFolderChoiceAndNoneAfterAnEdit) {
    using enum PatternLabel;
    EXPECT_EQ(PatternLabelFor("*.*", AfterEdit), "All files");
    EXPECT_EQ(PatternLabelFor("*.txt", AfterFolderChoice), "All files matching: *.txt");
    EXPECT_EQ(PatternLabelFor("abcdefgh.txt", AfterEdit), "All files matching abcdefgh.txt");
    EXPECT_EQ(PatternLabelFor("abcdefghi.txt", AfterEdit), "All files matching abc...hi.txt");
    EXPECT_EQ(PatternToolTipFor("All files matching abc...hi.txt", "abcdefghi.txt"),
              "abcdefghi.txt");
    OperationSetup setup = FolderSetup("*.txt");
    EXPECT_EQ(setup.FilesCaption[InputSide], "All files matching: *.txt");
    setup.FilesCaption[InputSide] = "All files matching *.txt";
    RewriteCaptions(setup, EqualityNotes);
    EXPECT_EQ(setup.FilesCaption[InputSide], "All files matching *.txt") << "written anew";
}

TEST(ConsistencyCheck, FindsTheFirstDisagreement) {
    using S = OperationSetup;
    using Case = std::pair<int, void (*)(S&)>;
    const auto check = [](const S& agreed, std::initializer_list<Case> cases) {
        ASSERT_EQ(CheckConsistency(agreed, EqualityNotes), 0);
        for (const auto& [code, change] : cases) {
            S setup = agreed;
            change(setup);
            EXPECT_EQ(CheckConsistency(setup, EqualityNotes), code);
        }
    };
    check(SingleFileSetup(),
          {{-1, [](S& s) { s.FolderCaption[InputSide] = "/ho...7/"; }},
           {-1, [](S& s) { s.FolderCaption[InputSide].clear(); }},
           {-2, [](S& s) { s.FilesCaption[InputSide] = "other.txt"; }},
           {-5, [](S& s) { s.FolderCaption[OutputSide] = "Same as input folder"; }},
           {-6, [](S& s) { s.FolderCaption[OutputSide] = "/elsewhere/"; }},
           {-7, [](S& s) { s.FilesCaption[OutputSide] = "Same as input file"; }},
           {-8, [](S& s) { s.FilesCaption[OutputSide].clear(); }}});
    check(
        FolderSetup("*.txt"),
        {{-3, [](S& s) { s.FilesCaption[InputSide] = "All files"; }}, // but the pattern is narrower
         {-4, [](S& s) { s.FilesCaption[InputSide] = "All files matching *.doc"; }},
         {-4, [](S& s) { s.FilesCaption[InputSide] = "*.txt"; }},
         {-9, [](S& s) { s.OutputMode = OutputTarget::SeparateOutput; }}});
}

TEST(ConsistencyCheck, AcceptsEveryFormThatALabelMayHave) {
    OperationSetup setup = SingleFileSetup();
    for (const auto& [caption, code] : {std::pair{LongFolder, 0}, // in full, where there is room
                                        {"/ho...le/2026/", 0},    // shortened to another width
                                        {"...", -1},
                                        {"/ho...", -1},
                                        {"/home...le/2026/", -1},
                                        {"/ho...la/2026/", -1}}) {
        setup.FolderCaption[InputSide] = caption;
        EXPECT_EQ(CheckConsistency(setup, EqualityNotes), code) << caption;
    }
    setup = FolderSetup("abcdefghi.txt");
    for (const char* pattern : {" abcdefghi.txt", ": abcdefghi.txt", " abc...hi.txt"}) {
        setup.FilesCaption[InputSide] = std::string("All files matching") + pattern;
        EXPECT_EQ(CheckConsistency(setup, EqualityNotes), 0) << pattern;
    }
    const auto noTexts = [](ProgramText) { return std::string(); };
    RewriteCaptions(setup, noTexts);
    EXPECT_EQ(CheckConsistency(setup, noTexts), 0);
    setup.Folder[OutputSide] = "/elsewhere/";
    EXPECT_NE(CheckConsistency(setup, noTexts), 0);
}

class Desk : public DeskTest {
  protected:
    Desk() { desk.FinishStartup(); }
    void ChooseInput() { desk.SetInputFile("/in/", "a.txt"); }
};

TEST_F(Desk, ShowsTheMenuWhileWaitingAndHidesItBehindAnotherPane) {
    desk.Show(Pane::Waiting);
    EXPECT_TRUE(Control("fraMenu").visible);
    EXPECT_FALSE(Control("fraMenu").enabled || Control("fraMain").enabled);
    desk.Show(Pane::Key);
    EXPECT_TRUE(Control("fraKey").visible && Control("fraKey").enabled);
    EXPECT_FALSE(Control("fraMenu").visible || Control("lblKeyFrom(0)").visible);
}

TEST_F(Desk, ClearsTheInputChoiceWhenItsKindChanges) {
    ChooseInput();
    desk.SelectInputMode(InputSource::SingleFile);
    EXPECT_EQ(desk.Setup().FilePath(InputSide), "/in/a.txt") << "the kind is the same";
    desk.SelectOutputMode(OutputTarget::SeparateOutput);
    for (const bool isFolder : {true, false}) {
        desk.SelectInputMode(isFolder ? InputSource::FilesInAFolder : InputSource::SingleFile);
        EXPECT_EQ(desk.Setup().OutputMode, OutputTarget::OverwriteInput);
        EXPECT_EQ(desk.Setup().FilePath(InputSide), "");
        EXPECT_EQ(desk.Setup().SubfolderAnswer, std::nullopt);
        for (const char* label : {"lblFolder(0)", "lblFolder(1)", "lblFiles(0)", "lblFiles(1)"})
            EXPECT_EQ(Text(label), "") << label;
        EXPECT_EQ(Control("fraOutput").visible, !isFolder);
        EXPECT_EQ(Control("cmdSingleFile(0)").enabled, !isFolder);
        EXPECT_EQ(Control("fraFilesInAFolder").enabled, isFolder);
        EXPECT_EQ(Text("lblInputFile"), isFolder ? "Input files:" : "Input file:");
    }
}

TEST_F(Desk, LetsTheOutputFollowTheInputWhileOverwriting) {
    ChooseInput();
    EXPECT_EQ(desk.Setup().FilePath(OutputSide), "/in/a.txt");
    EXPECT_EQ(Text("lblFolder(1)"), "Same as input folder");
    EXPECT_EQ(Text("lblFiles(1)"), "Same as input file");
    EXPECT_FALSE(Control("lblFiles(1)").bold || Control("cmdSingleFile(1)").enabled);
    desk.SelectOutputMode(OutputTarget::SeparateOutput);
    EXPECT_EQ(desk.Setup().FilePath(OutputSide), "/in/a.txt") << "what stands is kept";
    EXPECT_TRUE(Control("cmdSingleFile(1)").enabled);
    desk.SetOutputFile("/out/", "b.txt");
    EXPECT_TRUE(Control("lblFolder(1)").bold && Control("lblFiles(1)").bold);
    desk.SetInputFile("/in/", "c.txt");
    EXPECT_EQ(desk.Setup().FilePath(OutputSide), "") << "chosen anew for another input";
    EXPECT_EQ(Text("lblFiles(1)"), "");
    desk.SelectOutputMode(OutputTarget::OverwriteInput);
    EXPECT_EQ(desk.Setup().FilePath(OutputSide), "/in/c.txt");
}

TEST_F(Desk, AcceptsAMaximumWithinTheLimits) {
    for (const char* refused : {"9", "10001", "", "many", "99999999999999999999", "65556"}) {
        user.Expect(Notice("The value for the maximum number of files in a single operation "
                           "must be between 10 and 10000",
                           "Maximum number of files", BoxIcon::Information));
        EXPECT_FALSE(desk.LeaveMaxNumFiles(refused)) << refused;
        EXPECT_EQ(Text("txbMaxNumFiles"), "20");
    }
    EXPECT_TRUE(desk.LeaveFilePattern("report?.txt"));
    EXPECT_EQ(Text("lblFiles(0)"), "") << "no folder is chosen";
    EXPECT_TRUE(desk.LeaveFilePattern(""));
    EXPECT_EQ(desk.Setup().FilePattern, "*.*");
    desk.ResetSetup();
    EXPECT_EQ(desk.Setup().FilePattern, "");
    for (const auto& [typed, shown] :
         {std::pair{"10", "10"}, {"10000", "10000"}, {"  25 files", "25"}}) {
        EXPECT_TRUE(desk.LeaveMaxNumFiles(typed)) << typed;
        EXPECT_EQ(Text("txbMaxNumFiles"), shown);
    }
    OperationSetup setup;
    setup.MaxNumFiles = 5; // a setup file may say so
    desk.TakeOver(setup);
    EXPECT_TRUE(desk.LeaveMaxNumFiles("5"));
}

TEST_F(Desk, AsksForAFolderBeforeTheSubfolderQuestionIsAnswered) {
    desk.SelectInputMode(InputSource::FilesInAFolder);
    user.Expect("Subfolders?", "Please select an input folder.");
    desk.AnswerSubfolders(true);
    EXPECT_FALSE(Control("optSubfolders").checked);
    desk.SetInputFolder(folder.Path());
    user.Expect(Notice(folder.Path() + " has no subfolders.", "Subfolders?", BoxIcon::Information));
    desk.AnswerSubfolders(true);
    EXPECT_FALSE(Control("optSubfolders").checked);
    std::filesystem::create_directory(folder / "sub");
    desk.AnswerSubfolders(true);
    EXPECT_TRUE(Control("optSubfolders").checked);
    EXPECT_FALSE(Control("optNotSubfolders").checked);
}

TEST_F(Desk, PromptsForAMissingInputOnceStartupIsOver) {
    SetupDesk fresh(user, disk, EqualityNotes);
    EXPECT_EQ(fresh.Refresh().at("txbMaxNumFiles").text, "10000");
    EXPECT_FALSE(fresh.ReadyToPerform());
    user.Expect("Input file", "Please specify input file.");
    EXPECT_FALSE(desk.ReadyToPerform());
    desk.SelectInputMode(InputSource::FilesInAFolder);
    user.Expect("Input folder", "Please specify input folder.");
    EXPECT_FALSE(desk.ReadyToCheck());
}

TEST_F(Desk, OffersACheckOfWhatIsToBeDecryptedWhateverItsOutput) {
    EXPECT_FALSE(Control("cmdCheckFiles").visible || Control("cmdCheckFiles").enabled);
    OperationSetup setup = SingleFileSetup();
    setup.Operation = Direction::Decrypt;
    setup.OutputMode = OutputTarget::OverwriteInput; // but the output is another
    desk.TakeOver(setup);
    EXPECT_TRUE(Control("cmdCheckFiles").visible && Control("cmdCheckFiles").enabled);
    EXPECT_TRUE(desk.ReadyToCheck());
    user.Expect(PromptBox(Prompt::ChooseAnew, InputSource::SingleFile));
    EXPECT_FALSE(desk.ReadyToPerform());
}

TEST_F(Desk, WritesLabelsAnewBeforeAnOperation) {
    OperationSetup setup = SingleFileSetup();
    setup.FolderCaption = {"/stale/", "Same as input folder"};
    desk.TakeOver(setup);
    EXPECT_TRUE(desk.ReadyToPerform());
    EXPECT_EQ(Text("lblFolder(0)"), LabelFor(LongFolder));
    EXPECT_EQ(Text("lblFolder(1)"), "/out/");
}

} // namespace
} // namespace zr5::test
