#include "setup/setup_store.h"

#include "setup/setup_text.h"
#include "support/fixtures.h"

#include <filesystem>

namespace zr5::test {
namespace {

class Store : public DeskTest {
  protected:
    Store() {
        machine.ownFolder = folder.Path();
        desk.FinishStartup();
    }
    std::string Content() { return WriteSetupText(desk.Setup()).value_or("cannot be written"); }
    /// With the box that is expected after the picker, and its answer.
    void Load(const std::string& name, const std::optional<MessageBox>& box = {},
              Answer answer = Answer::Ok) {
        user.ExpectFile("Specify operation file to be loaded", folder / name);
        if (box) user.Expect(*box, answer);
        store.LoadOperationFile([this] { ++pickersClosed; }, [this] { shown = InputPath(); });
    }
    void SaveAs(const std::string& name, const std::optional<MessageBox>& box = {},
                Answer answer = Answer::Ok) {
        user.ExpectFile("Specify operation file to be saved", folder / name);
        if (box) user.Expect(*box, answer);
        store.SaveAsOperationFile([this] { ++pickersClosed; });
    }

    SetupStore store{machine, desk};
    int pickersClosed = 0;
    std::string shown; ///< the input that the window showed behind the last question
};

TEST_F(Store, BringsBackEverySetupWithItsLabels) {
    const std::function<void()> setups[] = {
        [&] {
            const std::string unspeakable = "/not \xFF utf-8/" + std::string(90, 'n') + "/";
            desk.SetInputFile(unspeakable, "caf\xE9" + std::string(200, 'x'));
        },
        [&] {
            desk.SelectFunction(Direction::Decrypt);
            desk.SelectOutputMode(OutputTarget::SeparateOutput);
            desk.SetInputFile("/in/", "a.txt");
            desk.SetOutputFile("/in/", "b.txt");
        },
        [&] {
            std::filesystem::create_directories(folder / "in/sub");
            desk.SelectInputMode(InputSource::FilesInAFolder);
            desk.SetInputFolder(folder / "in/");
            desk.AnswerSubfolders(true);
            desk.LeaveMaxNumFiles("10000");
            desk.LeaveFilePattern("a longer pattern.t?t");
            desk.SetInputFolder(folder / "in/"); // the label has a colon now, as after a load
        }};
    for (const auto& set : setups) {
        desk.ResetSetup();
        set();
        store.SaveForNextRun();
        const std::string saved = folder.Read("zr5e.opn");
        EXPECT_EQ(saved, Content());
        const MainWindowView before = desk.Refresh();
        desk.ResetSetup();
        folder.Remove("in");
        EXPECT_TRUE(store.LoadSetup(folder / "zr5e.opn"));
        EXPECT_EQ(desk.CheckLabels(), 0);
        EXPECT_EQ(Content(), saved);
        for (const auto& [name, control] : desk.Refresh()) {
            EXPECT_EQ(control.text, before.at(name).text) << name;
            EXPECT_EQ(control.checked, before.at(name).checked) << name;
            EXPECT_EQ(control.toolTip, before.at(name).toolTip) << name;
        }
    }
    EXPECT_EQ(std::filesystem::status(folder / "zr5e.opn").permissions(),
              std::filesystem::perms(0600));
}

TEST_F(Store, LeavesTheOldFileWhenItCannotSave) {
    folder.Write("zr5e.opn", "old");
    const auto fails = [&] {
        user.Expect(Notice("Cannot save setup!", "Error", BoxIcon::Exclamation));
        store.SaveForNextRun();
        EXPECT_EQ(folder.Read("zr5e.opn"), "old");
    };
    desk.SetInputFile("/in/", "it's \"quoted\"");
    fails();
    desk.SetInputFile("/in/", "a.txt");
    disk.Fail(FsCall::Flush, 1, FsStatus::NoSpace);
    fails();
    OperationSetup contradiction = desk.Setup();
    contradiction.FileName[OutputSide] = "other.txt"; // but the input is to be overwritten
    desk.TakeOver(contradiction);
    fails();

    desk.SetInputFile("/in/", "a.txt");
    std::filesystem::create_directory(folder / "folder.opn");
    std::filesystem::create_symlink("nowhere", folder / "dangling.opn");
    for (const std::string name : {"none/a", "folder", "dangling"}) {
        SaveAs(name, Notice("Error when attempting to save setup in operation file " +
                                (folder / name) + ".opn",
                            "Error", BoxIcon::Exclamation));
    }
    EXPECT_EQ(desk.Setup().SetupFileName, "");
    EXPECT_EQ(folder.Names(), (std::set<std::string>{"dangling.opn", "folder.opn", "zr5e.opn"}));
}

TEST_F(Store, AsksBeforeItReplacesAnOperationFile) {
    SaveAs("plain");
    SaveAs("with.ext");
    EXPECT_EQ(folder.Names(), (std::set<std::string>{"plain.opn", "with.ext"}));
    EXPECT_EQ(desk.Setup().SetupFileName, folder / "with.ext");
    std::filesystem::create_symlink(folder / "plain.opn", folder / "link.opn");
    for (const Answer answer : {Answer::No, Answer::Cancel, Answer::Yes}) {
        folder.Write("plain.opn", "old");
        SaveAs("link",
               MessageBox{"Overwrite existing file " + (folder / "link.opn") + "?", "File exists",
                          BoxIcon::Question, BoxButtons::YesNoCancel, Answer::No},
               answer);
        EXPECT_EQ(folder.Read("plain.opn"), answer == Answer::Yes ? Content() : "old");
    }
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.opn"));
    Load("link.opn");
    EXPECT_EQ(desk.Setup().SetupFileName, folder / "link.opn");
    user.ExpectFile("Specify operation file to be loaded", std::nullopt);
    store.LoadOperationFile([this] { ++pickersClosed; }, [] {});
    EXPECT_EQ(desk.Setup().SetupFileName, folder / "link.opn") << "cancelled";
    EXPECT_EQ(pickersClosed, 7);
}

TEST_F(Store, OffersToClearTheSetupAfterAFileThatIsNone) {
    folder.Write("whole.opn", "");
    folder.MakeSpecials("whole.opn");
    const auto load = [&](const std::string& name, Answer answer) {
        desk.SetInputFile("/in/", "a.txt");
        Load(name,
             Question("Error when attempting to load setup from file\r\n" + (folder / name) +
                          "\r\n\r\nDo you wish to clear the setup?",
                      "Error", BoxIcon::Exclamation),
             answer);
        EXPECT_EQ(desk.Setup().SetupFileName, "");
    };
    for (const char* name : {"whole.opn", "folder", "pipe", "dangling", "nothing"})
        load(name, Answer::No);
    desk.SetInputFile("/in/", "a.txt");
    const std::string whole = Content();
    disk.Fail(FsCall::Read, 1);
    load("whole.opn", Answer::Yes);
    EXPECT_FALSE(desk.InputIsChosen());
    folder.Write("huge.opn", whole);
    std::filesystem::resize_file(folder / "huge.opn", std::uintmax_t{1} << 30U);
    load("huge.opn", Answer::No);
    EXPECT_FALSE(desk.InputIsChosen());
    folder.Write("short.opn", whole.substr(0, whole.find("\"20\"")));
    load("short.opn", Answer::No);
    EXPECT_EQ(InputPath(), "/in/a.txt") << "what was read stays";
    EXPECT_EQ(desk.CheckLabels(), 0) << "and is shown";
    load("short.opn", Answer::Yes);
    EXPECT_EQ(shown, "/in/a.txt") << "behind the question";
    EXPECT_EQ(InputPath(), "");
}

TEST_F(Store, NeverTurnsASetupIntoOneThatOverwrites) {
    desk.SelectInputMode(InputSource::FilesInAFolder);
    desk.SetInputFolder("/in/");
    OperationSetup setup = desk.Setup();
    setup.OutputMode = OutputTarget::SeparateOutput;
    folder.Write("separate.opn", WriteSetupText(setup).value());
    EXPECT_FALSE(store.LoadSetup(folder / "separate.opn"));
    user.Expect("Specify folder", "The output of this setup does not fit its other options.\r\n"
                                  "Please select the input folder anew, or clear the setup.");
    EXPECT_FALSE(desk.ReadyToPerform());

    setup = OperationSetup{};
    setup.Folder = setup.FolderCaption = {"/in/", "/out/"};
    setup.FileName = setup.FilesCaption = {"a", "b"};
    folder.Write("elsewhere.opn", WriteSetupText(setup).value());
    EXPECT_TRUE(store.LoadSetup(folder / "elsewhere.opn"));
    EXPECT_EQ(desk.CheckLabels(), -6);
    setup.Folder[OutputSide] = setup.FolderCaption[OutputSide] = "";
    setup.FileName[OutputSide] = setup.FilesCaption[OutputSide] = "";
    folder.Write("none.opn", WriteSetupText(setup).value());
    EXPECT_TRUE(store.LoadSetup(folder / "none.opn"));
    EXPECT_EQ(OutputPath(), "/in/a") << "overwriting needs no output in the file";
    EXPECT_EQ(desk.CheckLabels(), 0);
}

} // namespace
} // namespace zr5::test
