#include "operation/driver.h"

#include "operation/file_work.h"
#include "operation/operation_fixture.h"
#include "operation/report/file_result.h"

#include <filesystem>

namespace zr5::test {
namespace {

class DriverTest : public OperationTest {
  protected:
    std::string Run() {
        screen.BeginRun(PurposeOf(setup));
        OperationContext context = Context();
        context.leavesOut = leavesOut;
        totals = ProcessFiles(context);
        screen.EndRun();
        return screen.text();
    }
    void Add(const std::string& name) { list.AddFile(folder / name, folder / name); }
    /// What follows the heading.
    std::string Entries() {
        const std::string report = Run();
        return report.substr(report.find("\r\n") + 2);
    }
    OperationTotals totals; ///< of the last run
    bool leavesOut = false;
};

TEST_F(DriverTest, NamesADifferentOutputAndLeavesTheInputAlone) {
    folder.Write("a-rather-long-name.txt", "secret");
    ChooseInput("a-rather-long-name.txt");
    ChooseOutput("out.enc");
    setup.Operation = Direction::Decrypt;
    const std::string length = std::to_string(("result of " + setup.FilePath(InputSide)).size());
    EXPECT_EQ(Run(), "Decrypting " + (folder / "a-rather-long-name.txt") +
                         " to a file\r\n"
                         "  a-rather-long-name.txt 6 bytes   -> " +
                         (folder / "out.enc") + "  " + length + " bytes\r\n");
    EXPECT_EQ(folder.Read("a-rather-long-name.txt"), "secret");
    EXPECT_TRUE(kit.purged.empty());
    EXPECT_EQ(engine.CallNames(),
              (std::vector<std::string>{"operation_initialization", "decrypt_file"}));
    EXPECT_EQ(engine.lastKey, "ABCDEFGHIJKLMNOP");
}

TEST_F(DriverTest, LeavesEmptyAndTooSmallFilesToTheUser) {
    folder.Write("empty", "");
    ChooseInput("empty");
    setup.Operation = Direction::Decrypt;
    EXPECT_EQ(Entries(), "         empty  This file is empty (0 bytes).\r\n");
    folder.Write("two", "ab");
    ChooseInput("two");
    EXPECT_EQ(Entries(), "           two  This file is too small to have been ZR5-encrypted.\r\n");
    EXPECT_TRUE(engine.calls.empty());
    EXPECT_EQ(totals.filesProcessed, 0U);
    setup.Operation = Direction::Encrypt;
    EXPECT_NE(Entries().find("2 bytes   -> "), std::string::npos);
    folder.Remove("two");
    engine.fileResult = EngineResult::InputNotFound;
    EXPECT_EQ(Entries(), "           two  Input file not found.\r\n") << "vanished, not empty";
}

TEST_F(DriverTest, RefusesProtectedFilesInPlaceOnly) {
    machine.executablePath = folder / "zr5e";
    key.keyState = KeyState::Keyfile;
    key.keyfilePath = folder.Write("my.key", "abc");
    std::filesystem::create_hard_link(folder / "my.key", folder / "linked");
    for (const auto& [name, entry] :
         {std::pair{"run.BAT", "       run.BAT 3 bytes   ZR5 does not encrypt-in-place files with "
                               "extension bat.\r\n"},
          {"zr5e", "          zr5e 3 bytes   This is the ZR5 executable.  Encryption not "
                   "performed.\r\n"},
          {"linked", "        linked 3 bytes   This is the current keyfile.  Encryption not "
                     "performed.\r\n"}}) {
        folder.Write(name, "abc");
        ChooseInput(name);
        EXPECT_EQ(Entries(), entry);
        EXPECT_TRUE(engine.calls.empty());
        ChooseOutput("out");
        EXPECT_NE(Entries().find("-> "), std::string::npos);
        engine.calls.clear();
        setup.OutputMode = OutputTarget::OverwriteInput;
    }
}

TEST_F(DriverTest, ReportsWhyAFileCouldNotBeReplaced) {
    folder.Write("n.odg", "abc");
    ChooseInput("n.odg");
    const std::string temporary = folder / "n.odg.zr5-new";
    kit.findsName = false;
    EXPECT_EQ(Entries(), "         n.odg 3 bytes   Unable to get temporary output filename.\r\n");
    kit.findsName = true;
    kit.purgeResult = PurgeResult::NotOpened;
    EXPECT_EQ(Entries(),
              "         n.odg 3 bytes   Error when renaming temporary output file. The "
              "result of the encryption operation is in the file " +
                  temporary +
                  ".\r\n              The file is unchanged: it cannot be overwritten.\r\n");
    EXPECT_EQ(totals.filesProcessed, 1U);
    EXPECT_EQ(folder.Names(), (std::set<std::string>{"n.odg", "n.odg.zr5-new"}));
}

TEST_F(DriverTest, LeavesAFolderAloneThatWasExchanged) {
    namespace fs = std::filesystem;
    for (const char* name : {"box", "box/sub", "elsewhere"})
        fs::create_directory(folder / name);
    for (const char* name : {"box/a", "box/sub/b", "box/sub/c", "elsewhere/b", "elsewhere/c"})
        folder.Write(name, "abc");
    for (const char* name : {"box/", "box/sub/"})
        list.AddFolder(WorkItem::Kind::Folder, folder / name, *disk.IdentityOf(folder / name));
    for (const char* name : {"box/a", "box/sub/b", "box/sub/c"})
        Add(name);
    engine.onFile = [&](const std::string& input, const std::string& output) {
        std::ofstream(output) << "result";
        if (input != folder / "box/sub/b") return;
        fs::rename(folder / "box/sub", folder / "away");
        fs::create_directory_symlink(folder / "elsewhere", folder / "box/sub");
    };
    const std::string report = Run();
    EXPECT_NE(report.find("no longer the one that was listed"), std::string::npos) << report;
    for (const char* name : {"elsewhere/b", "elsewhere/c", "away/b", "away/c"})
        EXPECT_EQ(folder.Read(name), "abc") << name << report;
}

TEST_F(DriverTest, WritesFoldersAndProhibitedFoldersAndEveryNameOnOneLine) {
    folder.Write("a\nb\xFF.odg", "abc");
    setup.InputMode = InputSource::FilesInAFolder;
    setup.Folder[InputSide] = folder.Path();
    list.AddFolder(WorkItem::Kind::Folder, folder.Path(), *disk.IdentityOf(folder.Path()));
    Add("a\nb\xFF.odg");
    list.AddFolder(WorkItem::Kind::UnreadableFolder, "/own/");
    list.AddFolder(WorkItem::Kind::ProhibitedFolder, "/proc/");
    const std::string report = Run();
    EXPECT_TRUE(report.starts_with("Encrypting all files in the folder " + folder.Path() +
                                   " to a file with same name.\r\n\r\nFolder: " + folder.Path() +
                                   "\r\n  a\\x0Ab\\xFF.odg 3 bytes   -> "));
    EXPECT_TRUE(report.ends_with("\r\nFolder: /own/\r\n***  Folder cannot be read  ***\r\n"
                                 "\r\nFolder: /proc/\r\n***  Prohibited folder  ***\r\n"));
}

class Anomaly : public DriverTest {
  protected:
    Anomaly() {
        setup.Operation = Direction::Decrypt;
        kit.fileRandomness = -0.4;
        folder.Write("a", std::string(4096, 'x'));
        folder.Write("b", std::string(4096, 'x'));
        folder.Write("small", std::string(4095, 'x'));
        ChooseInput("a");
    }
    const MessageBox question =
        Question("This file appears NOT to be encrypted?\r\nAttempt to decrypt it anyway?",
                 "Anomaly", BoxIcon::Question, Answer::No);
};

TEST_F(Anomaly, SkipsTheFileAndAsksWhetherToAbortUnlessItIsTheLast) {
    user.Expect(question, Answer::No);
    EXPECT_EQ(Entries(), "             a 4,096 bytes   skipped (file seems not encrypted)\r\n");
    EXPECT_TRUE(engine.calls.empty());
    EXPECT_EQ(screen.Outcome().Text(), "0 decrypted · 1 left alone");
    Add("b");
    for (const Answer abort : {Answer::Yes, Answer::No}) {
        user.Expect(question, Answer::No);
        user.Expect("Abort?", "Abort this decryption operation?", abort);
        if (abort == Answer::No) user.Expect(question, Answer::Yes);
        static_cast<void>(Run());
        EXPECT_EQ(totals.filesProcessed, abort == Answer::No ? 1U : 0U);
        EXPECT_EQ(screen.PausedDoneText(), abort == Answer::No ? "Done" : "Stopped");
    }
}

TEST_F(Anomaly, IsNotSuspectedOfShortUnreadableOrRandomFilesNorWhenEncrypting) {
    using enum Direction;
    for (const auto& [name, randomness, direction] : {std::tuple{"small", -0.4, Decrypt},
                                                      {"a", RandomnessUnreadable, Decrypt},
                                                      {"a", RandomnessThreshold, Decrypt},
                                                      {"a", -0.4, Encrypt}}) {
        folder.Write("a", std::string(4096, 'x'));
        ChooseInput(name);
        kit.fileRandomness = randomness;
        setup.Operation = direction;
        static_cast<void>(Run());
        EXPECT_EQ(totals.filesProcessed, 1U);
    }
}

TEST_F(DriverTest, LeavesOutWhatIsDoneWhenItsTurnComes) {
    using enum Direction;
    leavesOut = true;
    const std::string sealed = "ZR5\x01" + std::string(4996, '.');
    const std::string plain(5000, 'x');
    kit.randomnessOf[folder / "done"] = -0.4; // nobody asks whether it is to be decrypted
    for (const Direction direction : {Encrypt, Decrypt}) {
        const std::string& done = direction == Encrypt ? sealed : plain;
        const std::string& toDo = direction == Encrypt ? plain : sealed;
        const std::string leftOut =
            " 5,000 bytes   left out (" +
            std::string(direction == Encrypt ? "encrypted already" : "not encrypted") + ")\r\n";
        setup.Operation = direction;
        list = {};
        for (const char* name : {"toDo", "done", "empty", "changed"})
            folder.Write(name, name == std::string("done") ? done : toDo), Add(name);
        folder.Write("empty", "");
        engine.onFile = [&](const std::string& input, const std::string& output) {
            std::ofstream(output) << "result";
            if (input == folder / "toDo") folder.Write("changed", done);
        };
        const std::string report = Run();
        for (const char* name : {"          done", "       changed"})
            EXPECT_NE(report.find(name + leftOut), std::string::npos) << report;
        EXPECT_NE(report.find("empty (0 bytes)"), std::string::npos);
        EXPECT_EQ(folder.Read("toDo"), "result");
        EXPECT_NE(screen.Outcome().Text().find("2 left out · 1 left alone"), std::string::npos);
        EXPECT_EQ(std::pair(totals.filesProcessed, totals.filesLeftOut), std::pair(1UL, 2UL));
        disk.Fail(FsCall::Open, 1); // what cannot be read is left to the engine
        list = {};
        Add("done");
        user.onAsk = [](const MessageBox&) { return Answer::Yes; };
        static_cast<void>(Run());
        EXPECT_EQ(totals.filesLeftOut, 0U);
    }
}

TEST_F(DriverTest, StopsBetweenFilesOnly) {
    for (const char* name : {"a", "b", "c"}) {
        folder.Write(name, "abc");
        Add(name);
    }
    kit.onPurge = [&](const std::string& path) {
        if (path.ends_with("b")) screen.StopPressed();
        static_cast<void>(disk.Remove(path));
    };
    static_cast<void>(Run());
    EXPECT_EQ(totals.filesProcessed, 2U);
    EXPECT_EQ(screen.Outcome().Text(), "2 encrypted · 1 not begun");
    EXPECT_EQ(folder.Read("c"), "abc");
    EXPECT_EQ(journal.Tally(), (FileTally{.done = 1, .inAll = 3})) << "as noted with b";
}

TEST(EngineResult, IsReportedInItsOwnWords) {
    const std::string indent = "\r\n              ";
    const std::string partial = indent + "Partial plaintext may be in /o/out.txt.";
    const std::string blocks = indent + "Ciphertext is corrupt or decryption key is incorrect.";
    for (const auto& [code, text] :
         {std::pair{-3, std::string("Input file not found.")},
          {-4, "Unable to open input file."},
          {-5, "Unable to open output file."},
          {-9, "Write error: disk full."},
          {-16, "Read error." + partial},
          {-17, "Write error." + partial},
          {-18, "Invalid block size." + indent +
                    "Decryption key is incorrect or ciphertext is corrupt." + partial},
          {-21, "One block expansion error occurred." + blocks + partial},
          {-29, "9 block expansion errors occurred." + blocks + partial},
          {-15, "Unknown error #-15."},
          {-30, "Unknown error #-30." + partial}})
        EXPECT_EQ(ResultText(FileResult::OfEngine(static_cast<EngineResult>(code), "/o/out.txt"),
                             "/i", Direction::Decrypt, 0),
                  text);
}

TEST(Damage, IsToldByWhatIsLostAndWhichEndIsWrong) {
    const auto said = [](const Damage& damage, const std::string& path = "/o.partial") {
        FileResult result = FileResult::OfEngine(EngineResult::CorruptEndPartial, path);
        result.damage = damage;
        const std::string text = ResultText(result, "/i", Direction::Decrypt, 0);
        const std::size_t last = text.rfind("corrupt.") + 8;
        return text.substr(std::min(text.size(), text.find("\r\n", last + 1)));
    };
    const std::string indent = "\r\n              ";
    const auto end = [&](Side side, std::int64_t surplus) {
        return said({.wrongEnd = WrongEnd{side, surplus}});
    };
    EXPECT_EQ(end(Side::End, 512), indent + "The plaintext is complete; 512 bytes too much.");
    EXPECT_EQ(end(Side::Front, 1), indent + "The plaintext is complete; 1 byte too much in front.");
    EXPECT_EQ(end(Side::End, -40),
              indent + "The plaintext is complete; 40 bytes are missing at the end.");
    EXPECT_EQ(end(Side::Front, 0),
              indent + "The plaintext is complete; the header in front is damaged.");
    EXPECT_EQ(said({.missingPlainBytes = 68'928, .wrongEnd = WrongEnd{Side::End, -70'000}}),
              indent + "The end of the plaintext is missing: 68,928 bytes.");
    const Damage both{.lost = {{65'536, 65'536}, {262'144, 1}},
                      .lostStretches = 4,
                      .wrongEnd = WrongEnd{Side::End, 0}};
    EXPECT_EQ(said(both), indent + "Bytes 65,537 to 131,072 are lost (zeros)." + indent +
                              "Byte 262,145 is lost (zero)." + indent +
                              "And 2 more stretches are lost." + indent +
                              "The header at the end is damaged.");
    EXPECT_EQ(ResultText({.outcome = Outcome::EngineFailed,
                          .engineResult = EngineResult::WrongKeyOrCorrupt,
                          .damage = {.isOfNewerVersion = true}},
                         "/i", Direction::Decrypt, 0),
              "Invalid block size." + indent +
                  "Decryption key is incorrect or ciphertext is corrupt." + indent +
                  "The file was made by a newer version of this program.");
}

} // namespace
} // namespace zr5::test
