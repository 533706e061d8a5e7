#include "app/next_run_setup.h"
#include "app/shutdown.h"
#include "app/startup.h"
#include "app/web_link.h"
#include "operation/operation_journal.h"
#include "support/desk_fixture.h"
#include "support/fakes.h"

#include <filesystem>

namespace zr5::test {
namespace {

using Names = std::vector<std::string>;

class FakeSetupFiles : public SetupFiles {
  public:
    explicit FakeSetupFiles(SetupDesk& desk) : desk_(desk) {}
    bool LoadSetup(const std::string& path) override {
        loaded.push_back(path);
        desk_.TakeOver(content);
        return succeeds;
    }
    OperationSetup content;
    bool succeeds = true;
    std::vector<std::string> loaded;

  private:
    SetupDesk& desk_;
};

class ProgramTest : public DeskTest {
  protected:
    bool Start() {
        const WindowSteps steps{[this] { log.push_back("fit"); },
                                [this] { log.push_back("clock"); },
                                [this] { log.push_back("show"); }};
        return StartProgram(parts, steps, nextRunPath);
    }
    void ExpectStartupMessage() {
        user.Expect("Startup", "1. Select 'Encrypt' or 'Decrypt'\r\n"
                               "2. Select 'Single file' or 'Files in a folder'\r\n"
                               "3. Select the input file or folder\r\n\r\n"
                               "For more help click on the 'Help on startup' button.");
    }
    bool Quit() { return QuitProgram(parts, nextRunPath, "Quit"); }
    void HoldKey() {
        key.keyText = SecretBytes::CopyOf(std::string_view("ABCDEFGHIJKLMNOP"));
        key.keyState = key_state::Keyboard;
    }

    std::string nextRunPath = folder / "zr5e.opn";
    FakeEngine engine;
    FakeKit kit;
    CurrentKey key;
    FakeSetupFiles setupFiles{desk};
    ProgramParts parts{user, disk, engine, kit, key, desk};
    Names log;
};

TEST_F(ProgramTest, StartsWithoutAKeyAndGreetsANewUserOnce) {
    HoldKey();
    desk.SelectFunction(Function::Decrypt);
    ExpectStartupMessage();
    EXPECT_TRUE(Start());
    EXPECT_TRUE(desk.StartupDone());
    EXPECT_EQ(desk.Setup().Operation, Function::Encrypt);
    EXPECT_FALSE(key.IsHeld());
    EXPECT_EQ(log, (Names{"fit", "clock", "show"}));
    EXPECT_EQ(engine.CallNames(), Names{"allocate_buffers"});
    EXPECT_EQ(desk.Setup().MaxNumFiles, 20);
}

TEST_F(ProgramTest, EndsWhatAnInterruptedRunHasLeft) {
    const std::string path = folder.Write("a.odt", "as it was");
    {
        JournalRecord record;
        record.step = JournalRecord::Step::Writing;
        record.originalPath = path;
        record.resultPath = path + ".zr5";
        OperationJournal journal(disk);
        ASSERT_TRUE(journal.OpenNew(JournalPath(nextRunPath)));
        ASSERT_TRUE(journal.Note(record));
    }
    user.Expect("Interrupted operation",
                "Vaultline ZR5 was interrupted while this file was being encrypted:\r\n\r\n" +
                    path + "\r\n\r\nThe program has not touched the file.");
    ExpectStartupMessage();
    EXPECT_TRUE(Start());
    EXPECT_EQ(folder.Names(), std::set<std::string>{"a.odt"});
}

TEST_F(ProgramTest, EndsAtOnceWhenTheEngineHasNoBuffers) {
    engine.allocateResult = 0;
    user.Expect(
        Notice("Attempt to allocate buffers was unsuccessful!", "Fatal error", BoxIcon::Critical));
    EXPECT_FALSE(Start());
    EXPECT_EQ(log, (Names{"fit", "clock"})) << "the window is never shown";
}

TEST_F(ProgramTest, TakesUpTheSetupOfTheLastRunUnlessItFailsToLoadOrContradictsItsLabels) {
    folder.Write("zr5e.opn", "x");
    parts.setupFiles = &setupFiles;
    desk.SetInputFile("/in/", "a");
    desk.RewriteLabels();
    setupFiles.content = desk.Setup();
    EXPECT_TRUE(Start()) << "without a message";
    EXPECT_EQ(setupFiles.loaded, Names{nextRunPath});
    EXPECT_EQ(desk.Setup().FilePath(Input), "/in/a");

    setupFiles.succeeds = false;
    for (const char* label : {"/in/", "/elsewhere/"}) {
        setupFiles.content.FolderCaption[Input] = label;
        ExpectStartupMessage();
        EXPECT_TRUE(Start());
        EXPECT_EQ(desk.Setup().Folder[Input], "");
        setupFiles.succeeds = true;
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
    EXPECT_EQ(engine.CallNames(), Names{"deallocate_buffers"});
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
    EXPECT_TRUE(Quit());
    ASSERT_EQ(kit.purged.size(), 1U);
    EXPECT_EQ(kit.purged[0], (FakeKit::Purge{nextRunPath, 1000, true, false}));

    kit.purgeResult = PurgeFailureLimit - 1;
    user.Expect(question, Answer::Yes);
    user.Expect(Notice("The file " + nextRunPath + " could not be wiped.", "Erase setup file?",
                       BoxIcon::Exclamation));
    EXPECT_TRUE(Quit());
}

TEST_F(ProgramTest, FindsItsTextsBesideTheExecutable) {
    LoadTextsBesideExecutable(user, kit, "/opt/Zr5/ZR5E");
    EXPECT_EQ(kit.loaded, Names{"/opt/Zr5/zr5e.dat"});
    EXPECT_EQ(ProgramTextFileName("ZR5E.EXE"), "zr5e.dat");
}

TEST(NextRunSetup, LiesInTheMakersFolderThatOnlyItsOwnerMayEnter) {
    const TemporaryFolder folder;
    const auto fileSystem = MakeSystemFileSystem();
    const std::string config = folder / "config"; // not made yet
    for (int run = 0; run < 2; ++run) {
        EXPECT_EQ(NextRunSetupPath(*fileSystem, config), config + "/Velmora Systems/zr5e.opn");
        const auto status = std::filesystem::status(config + "/Velmora Systems");
        ASSERT_EQ(status.type(), std::filesystem::file_type::directory);
        EXPECT_EQ(status.permissions(), std::filesystem::perms::owner_all);
    }
    folder.Write("file", "x"); // no folder can be made below: named all the same
    EXPECT_EQ(NextRunSetupPath(*fileSystem, folder / "file"),
              folder / "file/Velmora Systems/zr5e.opn");
}

TEST(WebLink, OpensTheSecureAddressOrExplainsWhyTheBrowserDidNotStart) {
    const std::string start = "Error launching web browser, error code = ";
    const struct {
        std::int32_t code;
        std::string text;
    } cases[] = {{32, start + "32."},
                 {31, start + "31.\r\n\r\nFile extension 'html' is not associated with any "
                              "application program."},
                 {8, start + "8.\r\n\r\nOut of memory."},
                 {2, start + "2.\r\n\r\nPlease try once more."}};
    for (const auto& [code, text] : cases) {
        ScriptedUser user;
        user.openAddressResult = code;
        user.Expect(Notice(text, "Cannot launch web browser", BoxIcon::Exclamation));
        OpenWebLink(user, "file:///opt/zr5e/manual/index.html");
    }
    ScriptedUser user;
    user.openAddressResult = 33;
    OpenWebLink(user, "http://manual.example/a");
    OpenWebLink(user, "https://manual.example/b");
    EXPECT_EQ(user.openedAddresses,
              (Names{"https://manual.example/a", "https://manual.example/b"}));
}

TEST(WebLink, SpellsFilesSoThatEveryByteSurvives) {
    EXPECT_EQ(FileAddress("/opt/my prog/manual/index.html"),
              "file:///opt/my%20prog/manual/index.html");
    EXPECT_EQ(FileAddress("/a%b#c?\xc3\xa9\xff"), "file:///a%25b%23c%3F%C3%A9%FF");
}

} // namespace
} // namespace zr5::test
