#include "app/start_and_quit.h"
#include "app/web_link.h"
#include "setup/setup_store.h"
#include "setup/setup_text.h"
#include "support/fixtures.h"
#include "support/foreign_ways.h"

#include <filesystem>

namespace zr5::test {
namespace {

using Names = std::vector<std::string>;

class ProgramTest : public DeskTest {
  protected:
    ProgramTest() { machine.ownFolder = folder.Path(); }
    bool Start() {
        const WindowSteps steps{[this] { log.push_back("fit"); },
                                [this] { log.push_back("clock"); },
                                [this] { log.push_back("show"); }};
        return StartProgram(machine, desk, setups, key, steps);
    }
    void ExpectStartupMessage() {
        user.Expect("Startup", "1. Select 'Encrypt' or 'Decrypt'\r\n"
                               "2. Select 'Single file' or 'Files in a folder'\r\n"
                               "3. Select the input file or folder\r\n\r\n"
                               "For more help click on the 'Help on startup' button.");
    }
    bool Quit() { return QuitProgram(machine, desk, setups, key, "Quit"); }
    void HoldKey() {
        key.keyText = SecretBytes::CopyOf(std::string_view("ABCDEFGHIJKLMNOP"));
        key.keyState = KeyState::Keyboard;
    }

    std::string nextRunPath = folder / "zr5e.opn";
    CurrentKey key;
    SetupStore setups{machine, desk};
    Names log;
};

TEST_F(ProgramTest, StartsWithoutAKeyAndGreetsANewUserOnce) {
    HoldKey();
    desk.SelectFunction(Direction::Decrypt);
    ExpectStartupMessage();
    EXPECT_TRUE(Start());
    EXPECT_TRUE(desk.StartupDone());
    EXPECT_EQ(desk.Setup().Operation, Direction::Encrypt);
    EXPECT_FALSE(key.IsHeld());
    EXPECT_EQ(log, (Names{"fit", "clock", "show"}));
    EXPECT_EQ(engine.CallNames(), (Names{"allocate_buffers", "operation_initialization"}));
    EXPECT_EQ(desk.Setup().MaxNumFiles, 20);
}

TEST_F(ProgramTest, EndsAtOnceWhenTheEngineHasNoBuffers) {
    engine.allocates = false;
    user.Expect(
        Notice("Attempt to allocate buffers was unsuccessful!", "Fatal error", BoxIcon::Critical));
    EXPECT_FALSE(Start());
    EXPECT_EQ(log, (Names{"fit", "clock"})) << "the window is never shown";
}

TEST_F(ProgramTest, TakesUpTheSetupOfTheLastRunUnlessItFailsToLoadOrContradictsItsLabels) {
    desk.SetInputFile("/in/", "a");
    desk.RewriteLabels();
    const std::string whole = WriteSetupText(desk.Setup()).value();
    folder.Write("zr5e.opn", whole);
    EXPECT_TRUE(Start()) << "without a message";
    EXPECT_EQ(InputPath(), "/in/a");

    std::string contradiction = whole;
    contradiction.replace(contradiction.find("/in/"), 4, "/elsewhere/");
    for (const std::string& refused : {contradiction, whole.substr(0, whole.size() / 2)}) {
        folder.Write("zr5e.opn", refused);
        ExpectStartupMessage();
        EXPECT_TRUE(Start());
        EXPECT_EQ(InputPath(), "");
    }
}

TEST_F(ProgramTest, BelievesNothingWhereSomebodyElseMayWrite) {
    desk.SetInputFile("/in/", "a");
    desk.RewriteLabels();
    const std::string whole = WriteSetupText(desk.Setup()).value();
    for (const ForeignWay& way : ForeignWays) {
        TakeBack(folder);
        folder.Write("zr5e.opn", whole);
        if (!MakeForeign(way, folder, "zr5e.opn")) continue;
        std::filesystem::create_symlink("x", folder / "zr5e.journal");
        const auto before = folder.Contents();
        user.Expect("Setup", "The setup for the next run was not loaded, because somebody else may "
                             "have written it:\r\n\r\n" +
                                 nextRunPath + "\r\n" + way.reason);
        user.Expect("Interrupted operation",
                    "What an interrupted run is said to have left was not looked at, because "
                    "somebody else may have written this file:\r\n\r\n" +
                        (folder / "zr5e.journal") +
                        "\r\nIt is not a regular file.\r\n\r\nNothing that it names was touched. "
                        "Delete it if it is not yours.");
        ExpectStartupMessage();
        EXPECT_TRUE(Start());
        EXPECT_EQ(InputPath(), "") << way.reason;
        if (way.ofFolder) {
            user.Expect("Error", std::string("Cannot save setup!\r\n") + way.reason + "\r\n" +
                                     folder.Path());
            setups.SaveForNextRun();
        }
        EXPECT_EQ(folder.Contents(), before) << way.reason;
    }
}

TEST_F(ProgramTest, AsksBeforeQuittingWithAnInputAndMentionsTheKey) {
    EXPECT_TRUE(Quit()) << "nothing is chosen, nothing is asked";
    engine.calls.clear();
    desk.SetInputFile("/in/", "a");
    user.Expect(Question("Really quit?", "Quit"), Answer::No);
    EXPECT_FALSE(Quit());
    EXPECT_TRUE(engine.calls.empty()) << "the engine goes on when the user stays";
    HoldKey();
    user.Expect(Question("The key will be erased from memory on quit.\r\n\r\nReally quit?", "Quit"),
                Answer::Yes);
    EXPECT_TRUE(Quit());
    EXPECT_FALSE(key.IsHeld());
    EXPECT_EQ(engine.lastKey, "");
    EXPECT_EQ(engine.CallNames().back(), "deallocate_buffers");
}

TEST_F(ProgramTest, OffersToWipeTheSetupFileAndKeepsItByDefault) {
    folder.Write("zr5e.opn", "x");
    const auto question = Question("A setup-for-next-run file exists on disk.\r\n"
                                   "Do you wish to wipe this file?",
                                   "Erase setup file?", BoxIcon::Question, Answer::No);
    user.Expect(question, Answer::No);
    EXPECT_TRUE(Quit());
    EXPECT_TRUE(kit.purged.empty());

    user.Expect(question, Answer::Yes);
    kit.purgeResult = PurgeResult::NotOverwritten;
    user.Expect(Notice("The file " + nextRunPath + " could not be wiped.", "Erase setup file?",
                       BoxIcon::Exclamation));
    EXPECT_TRUE(Quit());
    EXPECT_EQ(kit.purged,
              (std::vector{FakeKit::Purge{nextRunPath, PurgeMode::OverwriteAndDelete}}));
}

TEST(OwnFolder, IsTheMakersFolderThatOnlyItsOwnerMayEnter) {
    const TemporaryFolder folder;
    const auto fileSystem = MakeSystemFileSystem();
    const std::string config = folder / "config"; // not made yet
    for (int run = 0; run < 2; ++run) {
        EXPECT_EQ(MakeOwnFolder(*fileSystem, config), config + "/Velmora Systems/");
        const auto status = std::filesystem::status(config + "/Velmora Systems");
        ASSERT_EQ(status.type(), std::filesystem::file_type::directory);
        EXPECT_EQ(status.permissions(), std::filesystem::perms::owner_all);
    }
    folder.Write("file", "x"); // no folder can be made below: named all the same
    EXPECT_EQ(MakeOwnFolder(*fileSystem, folder / "file"), folder / "file/Velmora Systems/");
}

TEST(WebLink, OpensTheSecureAddressOrExplainsWhyTheBrowserDidNotStart) {
    for (const auto& [code, reason] :
         {std::pair{32, "."},
          {31, ".\r\n\r\nFile extension 'html' is not associated with any application program."},
          {8, ".\r\n\r\nOut of memory."},
          {2, ".\r\n\r\nPlease try once more."}}) {
        ScriptedUser user;
        user.openAddressResult = code;
        user.Expect(
            Notice("Error launching web browser, error code = " + std::to_string(code) + reason,
                   "Cannot launch web browser", BoxIcon::Exclamation));
        OpenWebLink(user, FileAddress("/a%b#c d?\xc3\xa9\xff/a.html"));
        EXPECT_EQ(user.openedAddresses, Names{"file:///a%25b%23c%20d%3F%C3%A9%FF/a.html"});
    }
    ScriptedUser user;
    OpenWebLink(user, "http://manual.example/a");
    EXPECT_EQ(user.openedAddresses, Names{"https://manual.example/a"});
}

} // namespace
} // namespace zr5::test
