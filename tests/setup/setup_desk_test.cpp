#include "setup/setup_desk.h"

#include "setup/setup_text.h"
#include "setup/verb_form.h"
#include "support/desk_fixture.h"

#include <filesystem>

namespace zr5::test {
namespace {

using enum SetupDesk::Leaving;

class Desk : public DeskTest {
  protected:
    Desk() { desk.FinishStartup(); }
    void ChooseInput() { desk.SetInputFile("/in/", "a.txt"); }
    void ExpectNoLabels() {
        for (const char* label : {"lblFolder(0)", "lblFolder(1)", "lblFiles(0)", "lblFiles(1)"})
            EXPECT_EQ(Text(label), "") << label;
    }
};

TEST_F(Desk, AsksForNothingBeforeStartupIsOver) {
    SetupDesk fresh(user, disk, [](std::int16_t) { return ""; });
    EXPECT_EQ(fresh.Refresh().at("txbMaxNumFiles").text, "10000");
    EXPECT_FALSE(fresh.ReadyToPerform()) << "and nobody is asked for an input yet";
}

TEST_F(Desk, ResetsEveryChoice) {
    desk.SelectFunction(Function::Decrypt);
    desk.SelectOutputMode(OutputTarget::SeparateOutput);
    ChooseInput();
    desk.LeaveMaxNumFiles("77", Speaking);
    desk.LeaveFilePattern("*.txt", Speaking);
    desk.ResetSetup();
    OperationSetup first;
    first.SubfolderAnswer = false;
    EXPECT_EQ(WriteSetupText(desk.Setup()), WriteSetupText(first));
    ExpectNoLabels();
}

TEST_F(Desk, ClearsTheInputChoiceWhenItsKindChanges) {
    ChooseInput();
    desk.SelectInputMode(InputSource::SingleFile);
    EXPECT_EQ(desk.Setup().FilePath(Input), "/in/a.txt") << "the kind is the same";
    desk.SelectOutputMode(OutputTarget::SeparateOutput);
    for (const bool isFolder : {true, false}) {
        desk.SelectInputMode(isFolder ? InputSource::FilesInAFolder : InputSource::SingleFile);
        EXPECT_EQ(desk.Setup().OutputMode, OutputTarget::OverwriteInput);
        EXPECT_EQ(desk.Setup().FilePath(Input), "");
        EXPECT_EQ(desk.Setup().SubfolderAnswer, std::nullopt);
        ExpectNoLabels();
        EXPECT_EQ(Control("fraOutput").visible, !isFolder);
        EXPECT_EQ(Control("cmdSingleFile(0)").enabled, !isFolder);
        EXPECT_EQ(Control("fraFilesInAFolder").enabled, isFolder);
        EXPECT_EQ(Control("lblFilesInAFolder").visible, isFolder);
        EXPECT_EQ(Text("lblInputFile"), isFolder ? "Input files:" : "Input file:");
    }
}

TEST_F(Desk, LetsTheOutputFollowTheInputWhileOverwriting) {
    ChooseInput();
    EXPECT_EQ(desk.Setup().FilePath(Output), "/in/a.txt");
    EXPECT_EQ(Text("lblFolder(1)"), "Same as input folder");
    EXPECT_EQ(Text("lblFiles(1)"), "Same as input file");
    EXPECT_FALSE(Control("lblFiles(1)").bold || Control("cmdSingleFile(1)").enabled);
    desk.SelectOutputMode(OutputTarget::SeparateOutput);
    EXPECT_EQ(desk.Setup().FilePath(Output), "/in/a.txt") << "what stands is kept";
    EXPECT_TRUE(Control("cmdSingleFile(1)").enabled);
    desk.SetOutputFile("/out/", "b.txt");
    EXPECT_TRUE(Control("lblFolder(1)").bold && Control("lblFiles(1)").bold);
    desk.SetInputFile("/in/", "c.txt");
    EXPECT_EQ(desk.Setup().FilePath(Output), "") << "chosen anew for another input";
    EXPECT_EQ(Text("lblFiles(1)"), "");
    desk.SelectOutputMode(OutputTarget::OverwriteInput);
    EXPECT_EQ(desk.Setup().FilePath(Output), "/in/c.txt");
}

TEST_F(Desk, ShowsOnePaneAndDisablesTheRestBesideTheMenu) {
    for (const auto& [pane, frame] : {std::pair{Pane::Menu, "fraMenu"},
                                      {Pane::Waiting, "fraMenu"},
                                      {Pane::Setup, "fraSetup"},
                                      {Pane::SaveSetup, "fraSaveSetup"},
                                      {Pane::Key, "fraKey"},
                                      {Pane::Randomness, "fraRandomnessFiles"}}) {
        desk.Show(pane);
        const MainWindowView view = desk.Refresh();
        for (const char* each :
             {"fraMenu", "fraSetup", "fraSaveSetup", "fraKey", "fraRandomnessFiles"}) {
            const bool shown = std::string_view(each) == frame;
            EXPECT_EQ(view.at(each).visible, shown) << each;
            EXPECT_EQ(view.at(each).enabled, shown && pane != Pane::Waiting) << each;
        }
        EXPECT_EQ(view.at("fraMain").enabled, pane == Pane::Menu);
        EXPECT_EQ(view.at("lblKeyFrom(0)").visible, pane != Pane::Key);
    }
}

TEST_F(Desk, AcceptsAMaximumWithinTheLimitsAndRefusesSilentlyWhenHovered) {
    for (const char* refused : {"9", "10001", "", "many", "99999999999999999999", "65556"}) {
        user.Expect(Notice("The value for the maximum number of files in a single operation "
                           "must be between 10 and 10000",
                           "Maximum number of files", BoxIcon::Information));
        EXPECT_FALSE(desk.LeaveMaxNumFiles(refused, Speaking)) << refused;
        EXPECT_FALSE(desk.LeaveMaxNumFiles(refused, Silently)) << refused;
        EXPECT_EQ(Text("txbMaxNumFiles"), "20");
    }
    EXPECT_FALSE(desk.LeaveFilePattern("a<b", Silently));
    EXPECT_EQ(desk.Setup().FilePattern, "");
    for (const auto& [typed, shown] :
         {std::pair{"10", "10"}, {"10000", "10000"}, {"  25 files", "25"}}) {
        EXPECT_TRUE(desk.LeaveMaxNumFiles(typed, Speaking)) << typed;
        EXPECT_EQ(Text("txbMaxNumFiles"), shown);
    }
    OperationSetup setup;
    setup.MaxNumFiles = 5; // a setup file may say so
    desk.TakeOver(setup);
    EXPECT_TRUE(desk.LeaveMaxNumFiles("5", Speaking));
}

TEST_F(Desk, TidiesAndChecksThePattern) {
    EXPECT_TRUE(desk.LeaveFilePattern("  *.doc ", Speaking));
    EXPECT_EQ(Text("txbFilePattern"), "*.doc");
    EXPECT_EQ(Text("lblFiles(0)"), "") << "no folder is chosen";
    user.Expect(
        Notice("a<b\r\nis not a valid file pattern", "Invalid file pattern", BoxIcon::Information));
    EXPECT_FALSE(desk.LeaveFilePattern(" a<b ", Speaking));
    EXPECT_EQ(Text("txbFilePattern"), "*.doc");
    EXPECT_TRUE(desk.LeaveFilePattern("report?.txt", Speaking));
    EXPECT_TRUE(desk.LeaveFilePattern("", Speaking));
    EXPECT_EQ(Text("txbFilePattern"), "*.*");
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

TEST_F(Desk, PromptsForAMissingInput) {
    user.Expect("Input file", "Please specify input file.");
    EXPECT_FALSE(desk.ReadyToPerform());
    desk.SelectInputMode(InputSource::FilesInAFolder);
    user.Expect("Input folder", "Please specify input folder.");
    EXPECT_FALSE(desk.ReadyToPerform());
}

TEST_F(Desk, WritesLabelsAnewBeforeAnOperation) {
    OperationSetup setup;
    setup.Folder = {"/in/", "/out/"};
    setup.FileName = {"a", "b"};
    setup.FolderCaption = {"/stale/", "Same as input folder"};
    setup.OutputMode = OutputTarget::SeparateOutput;
    desk.TakeOver(setup);
    EXPECT_TRUE(desk.ReadyToPerform());
    EXPECT_EQ(Text("lblFolder(0)"), "/in/");
    EXPECT_EQ(Text("lblFolder(1)"), "/out/");
}

TEST(VerbForms, HaveACounterpartForEachOfTheEightAndNoOther) {
    for (const std::string end : {"", "ion", "ed", "ing"}) {
        EXPECT_EQ(VerbForm(Function::Encrypt, "Encrypt" + end), "Encrypt" + end);
        EXPECT_EQ(VerbForm(Function::Decrypt, "Encrypt" + end), "Decrypt" + end);
        EXPECT_EQ(VerbForm(Function::Decrypt, "encrypt" + end), "decrypt" + end);
    }
    EXPECT_EQ(VerbForm(Function::Decrypt, "Encrypter"), "Encrypter");
}

} // namespace
} // namespace zr5::test
