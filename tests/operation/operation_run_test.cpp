// A run from its first words to its summary, and the screen that it reports on.

#include "operation/file_listing.h"
#include "operation/operation_fixture.h"
#include "operation/operation_run.h"
#include "operation/report/report_screen.h"

#include <filesystem>

namespace zr5::test {
namespace {

class OperationRun : public OperationTest {
  protected:
    void ListFiles(std::size_t count, const std::string& extension = "odg") {
        for (std::size_t i = 0; i < count; ++i) {
            const std::string name = std::to_string(list.Files()) + "." + extension;
            folder.Write(name, "abc");
            list.AddFile(folder / name, folder / name);
        }
    }
    std::string Run() {
        RunOperation(Context());
        return screen.text();
    }
};

TEST_F(OperationRun, OpensWithTheCountAndClosesWithTheSummary) {
    const std::string path = folder.Write("a.odg", std::string(1234, 'x'));
    ChooseInput("a.odg");
    screen.AppendAlways("of the run before");
    engine.onFile = [this](const std::string&, const std::string& output) {
        std::ofstream(output) << "four";
        clock.now += std::chrono::milliseconds(2400);
    };
    EXPECT_EQ(Run(), "Number of files: 1\r\n\r\nEncrypting " + path +
                         " to a file with same name.\r\n"
                         "         a.odg 1,234 bytes   -> 4 bytes\r\n"
                         "\r\nNumber of files processed: 1\r\nNumber of files encrypted: 1\r\n"
                         "Total KB encrypted: 1.21\r\nElapsed time: 2 seconds\r\n");
    EXPECT_EQ(screen.PausedDoneText(), "Done");
    setup.Operation = Direction::Decrypt;
    static_cast<void>(Run());
    EXPECT_EQ(kit.purged, (std::vector<FakeKit::Purge>{{path, PurgeMode::OverwriteAndDelete},
                                                       {path, PurgeMode::DeleteOnly}}));
    EXPECT_EQ(folder.Names(), std::set<std::string>{"a.odg"});
}

TEST_F(OperationRun, ChecksWithoutTouchingTheDiskAndSumsUpWhatItFound) {
    ListFiles(4, "exe"); // of which nobody is warned
    folder.Write("0.exe", std::string(4096, 'x'));
    folder.Write("3.exe", "");
    setup.Operation = Direction::Decrypt;
    setup.InputMode = InputSource::FilesInAFolder;
    setup.OutputMode = OutputTarget::Nowhere;
    setup.Folder[InputSide] = folder.Path();
    kit.fileRandomness = -0.4;
    engine.onFile = [this](const std::string& input, const std::string&) {
        engine.fileResult = input == folder / "0.exe"   ? EngineResult::Success
                            : input == folder / "1.exe" ? EngineResult::OneDamagedBlock
                                                        : EngineResult::WrongKeyOrCorrupt;
        clock.now += std::chrono::seconds(1);
    };
    const std::string indent = "\r\n              ";
    EXPECT_EQ(
        Run(),
        "Number of files: 4\r\n\r\nChecking all files in the folder " + folder.Path() +
            "; nothing is written.\r\n         0.exe 4,096 bytes   intact\r\n"
            "         1.exe 3 bytes   One block expansion error occurred." +
            indent + "Ciphertext is corrupt or decryption key is incorrect.\r\n" +
            "         2.exe 3 bytes   Invalid block size." + indent +
            "Decryption key is incorrect or ciphertext is corrupt.\r\n"
            "         3.exe  This file is empty (0 bytes).\r\n"
            "\r\nNumber of files checked: 3\r\nNumber of files intact: 1\r\n"
            "Number of files damaged: 1\r\n"
            "Number of files damaged altogether, or not encrypted with this key: 1\r\n"
            "Number of files empty: 1\r\nTotal KB checked: 4.01\r\nElapsed time: 3 seconds\r\n");
    for (const FsCall call : disk.Calls())
        EXPECT_EQ(call, FsCall::Look);
    engine.onFile = [this](const std::string&, const std::string&) { screen.StopPressed(); };
    EXPECT_NE(Run().find("Number of files checked: 1\r\n"), std::string::npos);
}

TEST_F(OperationRun, SaysWhenNothingWasLeftToDo) {
    ListFiles(2);
    setup.Operation = Direction::Decrypt;
    OperationContext leavingOut = Context();
    leavingOut.leavesOut = true;
    RunOperation(leavingOut);
    EXPECT_NE(screen.text().find("Number of files left out: 2\r\n"
                                 "Nothing was left to do: no file is encrypted.\r\n"),
              std::string::npos);
}

TEST_F(OperationRun, WarnsOfAntiVirusProgramsByKindOfFile) {
    ListFiles(2, "EXE");
    const std::string advice = "\r\nIf you have anti-virus software running then it is recommended "
                               "that you disable it for this operation.";
    user.Expect(Notice("The file with extension exe might cause an anti-virus program to haldt "
                       "program execution." +
                           advice,
                       "Warning!", BoxIcon::Exclamation));
    static_cast<void>(Run());
    ListFiles(1, "bat");
    user.Expect("Warning!", "There are 3 files which might cause an anti-virus program to halt "
                            "program execution. In particular files with extension bat, exe." +
                                advice);
    static_cast<void>(Run());
}

TEST_F(OperationRun, RefusesTwiceTheMaximumButNotOneFewer) {
    setup.MaxNumFiles = 5;
    ListFiles(9);
    EXPECT_NE(Run().find("Number of files processed: 9"), std::string::npos);
    ListFiles(1);
    user.Expect(
        Notice("At least 10 files are to be encrypted.\r\n"
               "This is twice as many as the maximum number of files\r\ncurrently specified.\r\n"
               "Either increase that number or consider whether\r\n"
               "you wish to encrypt this many files in a single operation.",
               "Maximum number of files exceeded", BoxIcon::Exclamation));
    EXPECT_NE(Run().find("Number of files processed: 0"), std::string::npos);
    EXPECT_EQ(screen.PausedDoneText(), "Stopped");
}

TEST_F(OperationRun, RefusesTwoInputsWithOneOutput) {
    for (const char* name : {"a", "b"})
        list.AddFile(folder.Write(name, "abc"), folder / "same.enc");
    setup.OutputMode = OutputTarget::SeparateOutput;
    setup.FileName[OutputSide] = "*.enc";
    user.Expect(Notice("Output file specification *.enc produces duplicate output filenames!",
                       "Error", BoxIcon::Exclamation));
    static_cast<void>(Run());
    EXPECT_TRUE(engine.calls.empty());
    EXPECT_EQ(screen.PausedDoneText(), "Stopped");
}

TEST_F(OperationRun, NeedsRoomForTheFirstWordsOfItsReportOnly) {
    ListFiles(9);
    ReportScreen tiny(user, clock, 10);
    user.Expect(
        Notice("Textbox is full.  Report cannot continue.", "Textbox full", BoxIcon::Information));
    RunOperation({setup, key, list, machine, tiny, journal});
    EXPECT_TRUE(engine.calls.empty());
    ReportScreen small(user, clock, 300);
    user.Expect(ReportFullQuestion(), Answer::Yes);
    RunOperation({setup, key, list, machine, small, journal});
    EXPECT_NE(small.text().find("Number of files processed: 9"), std::string::npos);
}

TEST(RandomnessSummary, IndicatesWhatMostFilesAre) {
    const std::string plain = "not already encrypted or compressed.\r\n";
    const std::string coded = "already encrypted or compressed.\r\n";
    const std::string warning = "Warning: You may be trying to ";
    using enum Purpose;
    for (const auto& [operation, counts, words] :
         {std::tuple{Encrypt, RandomnessCounts{3, 3, 6}, std::string()},
          {Encrypt, {3, 1, 4}, plain},
          {Decrypt, {3, 1, 4}, plain + warning + "decrypt already-decrypted files!\r\n"},
          {Encrypt, {0, 2, 2}, coded + warning + "encrypt already-encrypted files!\r\n"},
          {Check, {3, 1, 4}, plain + warning + "check already-decrypted files!\r\n"},
          {Decrypt, {0, 2, 2}, coded}}) {
        EXPECT_EQ(
            ListingSummaryText(operation, {7, true, counts}),
            "Number of files to this point: 7\r\nNumber of files with randomness value < 0: " +
                std::to_string(counts.below) + "\r\nNumber of files with randomness value > 0: " +
                std::to_string(counts.above) + "\r\n" +
                (words.empty() ? "" : "This indicates that all or most files are " + words));
    }
}

TEST(Kilobytes, LoseTheirDecimalsFromAThousandOn) {
    for (const auto& [bytes, text] :
         {std::pair{1'023'999U, "1,000.00"}, {1'024'000U, "1,000"}, {1536U, "1.50"}})
        EXPECT_EQ(KilobytesText(bytes), text);
}

class Listing : public OperationTest {
  protected:
    Listing() {
        setup.InputMode = InputSource::FilesInAFolder;
        setup.Folder = {folder.Path(), folder.Path()};
        setup.SubfolderAnswer = true;
    }
    std::string List() {
        bool shown = false;
        listed = ListFiles(
            setup, machine, screen, "List files to be encrypted", [this] { return stopped; },
            [&] { shown = true; });
        return shown ? screen.text() : "";
    }
    void ExpectNone(const std::string& text) {
        user.Expect(Notice(text, "List files to be encrypted", BoxIcon::Information));
        EXPECT_EQ(List(), "");
    }
    bool stopped = false;
    std::vector<ListedFile> listed;
};

TEST_F(Listing, NamesEveryFolderAndFileAndSumsThemUp) {
    folder.Write("a.odg", std::string(1234, 'x'));
    std::filesystem::create_directory(folder / "sub");
    folder.Write("sub/b.BIN", std::string(4096, 'x'));
    kit.fileRandomness = -0.3;
    setup.Operation = Direction::Decrypt;
    user.onAsk = [](const MessageBox&) { return Answer::Ok; };
    const std::string path = folder.Path();
    EXPECT_EQ(List(), "Files to be decrypted\r\n"
                      "\r\n" +
                          path + " has 1 matching file and 1 subfolder.\r\n     [1]   " + path +
                          "a.odg (1,234 bytes)   \r\n\r\n" + path +
                          "sub/ has 1 matching file and no subfolders.\r\n     [2] * " + path +
                          "sub/b.BIN (4,096 bytes)   \r\n\r\nNumber of files: 2\r\n"
                          "Number of files with randomness value < 0: 1\r\n"
                          "Number of files with randomness value > 0: 0\r\n"
                          "\r\n * marks files that are never worked on in place, because of "
                          "their extension.\r\n");
    EXPECT_EQ(user.asked.size(), 1U) << "of programs that dislike b.BIN";
    EXPECT_EQ(screen.PausedDoneText(), "Done");
    ASSERT_EQ(listed.size(), 2U);
    EXPECT_EQ(listed[1].path, path + "sub/b.BIN");
}

TEST_F(Listing, EndsAtTheMaximumOrWhenStopped) {
    setup.MaxNumFiles = 5;
    for (int i = 0; i < 8; ++i)
        folder.Write(std::to_string(i), "x");
    EXPECT_NE(List().find("\r\nNumber of files to this point: 5\r\n"), std::string::npos);
    user.onEvents = [&] { screen.StopPressed(); }; // heard once the listing has begun
    EXPECT_EQ(List().find("\r\nNumber of files to this point: 5\r\n"), std::string::npos);
    EXPECT_EQ(screen.PausedDoneText(), "Stopped");
}

TEST_F(Listing, SaysWhenThereIsNothingToList) {
    const std::string path = folder.Path();
    ExpectNone("There are no files\r\nin folder " + path + "\r\nor any of its subfolders.");
    setup.SubfolderAnswer = false;
    ExpectNone("There are no files\r\nin folder " + path);
    setup.FilePattern = "*.txt";
    ExpectNone("There are no files *.txt\r\nin folder " + path);
    std::filesystem::create_directories(folder / "sub/deep");
    setup.SubfolderAnswer = true;
    clock.step = std::chrono::milliseconds(500);
    user.onEvents = [&] {
        if (user.isWorkShown) user.shownWork.back().stop();
    };
    ExpectNone("The search of " + path +
               "\r\nwas stopped early. There are no files *.txt\r\n"
               "as far as it came (but perhaps in the rest).");
    user.onEvents = [&] { stopped = true; }; // the program is to end
    EXPECT_EQ(List(), "");
}

class ReportScreenTest : public DiskTest {
  protected:
    ReportScreen screen{user, clock, 1000};

    void ExpectButtons(const std::string& stop, bool stopEnabled, const std::string& pause,
                       const std::string& label) {
        EXPECT_EQ(screen.StopCaption(), stop);
        EXPECT_EQ(screen.StopEnabled(), stopEnabled);
        EXPECT_EQ(screen.PauseCaption(), pause);
        EXPECT_EQ(screen.PauseEnabled(), stopEnabled);
        EXPECT_EQ(screen.PausedDoneText(), label);
    }
};

TEST_F(ReportScreenTest, FollowsARunFromIdleToDone) {
    screen.PauseContinuePressed(); // nothing runs: it does nothing
    ExpectButtons("Stop at next file", false, "Pause at next file", "");
    EXPECT_EQ(screen.Time().Text(), "");
    screen.BeginRun(Purpose::Encrypt);
    ExpectButtons("Stop at next file", true, "Pause at next file", "");
    clock.now += std::chrono::seconds(61);
    EXPECT_EQ(screen.Time().Text(), "Started 14:03, elapsed 1 minute and 1 second");
    screen.EndRun();
    clock.now += std::chrono::hours(5);
    EXPECT_EQ(screen.Time().ElapsedSeconds(), 61);
    screen.StopPressed();
    ExpectButtons("Stop at next file", false, "Pause at next file", "Done");
    screen.BeginRun(Purpose::Encrypt);
    screen.StopPressed();
    ExpectButtons("Stop", false, "Pause at next file", "Stopped");
    EXPECT_TRUE(screen.IsRunning());
    screen.EndRun();
    EXPECT_EQ(screen.PausedDoneText(), "Stopped");
    screen.BeginRun(Purpose::Encrypt);
    EXPECT_FALSE(screen.StopRequested());
}

TEST_F(ReportScreenTest, WaitsWhilePausedUntilContinueOrStop) {
    screen.BeginRun(Purpose::Encrypt);
    screen.PauseStep(); // not paused: returns
    int waits = 0;
    user.onEvents = [&] {
        ExpectButtons("Stop", true, "Continue", "Paused");
        if (++waits == 2) screen.PauseContinuePressed();
    };
    screen.PauseContinuePressed();
    ExpectButtons("Stop at next file", true, "Continue", "");
    screen.PauseStep();
    EXPECT_EQ(waits, 2);
    ExpectButtons("Stop at next file", true, "Pause at next file", "");
    user.onEvents = [&] { screen.StopPressed(); };
    screen.PauseContinuePressed();
    screen.PauseStep();
    EXPECT_TRUE(screen.StopRequested());
}

TEST_F(ReportScreenTest, ShowsHowFarItIsWithTheCurrentFileAndWithoutPauses) {
    constexpr std::uint64_t Megabyte = 1048576;
    screen.BeginRun(Purpose::Encrypt);
    screen.BeginFiles(2, 4 * Megabyte);
    EXPECT_EQ(screen.ProgressText(), "0 of 2 files, 0.00 of 4.00 MB");
    screen.BeginFile("a", 2 * Megabyte, 2);
    clock.now += std::chrono::seconds(10);
    screen.PassProgress()(Megabyte, 2 * Megabyte);
    EXPECT_EQ(screen.Progress().file.Fraction(), 0.25);
    screen.NextPass();
    EXPECT_EQ(screen.Progress().file.Fraction(), 0.5);
    screen.EndFile(2 * Megabyte);
    user.onEvents = [&] {
        clock.now += std::chrono::hours(1);
        screen.PauseContinuePressed();
    };
    screen.PauseContinuePressed();
    screen.PauseStep();
    EXPECT_EQ(screen.ProgressText(), "1 of 2 files, 2.00 of 4.00 MB, 10 seconds left");
    EXPECT_EQ(screen.Progress().Fraction(), 0.5);
}

TEST_F(ReportScreenTest, TellsHowItWentAndLeadsFromProblemToProblem) {
    const auto went = [this] { return screen.Outcome().Text(); };
    const auto add = [this](EntryKind kind, const char* words) {
        screen.BeginEntry();
        screen.AppendToReport(words);
        screen.EndEntry(kind);
        screen.AppendToReport("\r\n");
    };
    screen.BeginRun(Purpose::Encrypt);
    EXPECT_FALSE(screen.ShowsOutcome());
    screen.BeginOutcome("encrypted", "failed", 6);
    add(EntryKind::Success, "a");
    EXPECT_EQ(screen.Outcome().GetVerdict(), Verdict::None) << "not before the end";
    EXPECT_EQ(screen.NextProblem(0), nullptr);
    add(EntryKind::Failed, "b\r\nfor this reason");
    add(EntryKind::LeftOut, "c");
    add(EntryKind::LeftAlone, "d");
    add(EntryKind::Warned, "e");
    EXPECT_EQ(went(), "2 encrypted (1 with a warning) · 1 left out · 1 left alone · 1 failed");
    for (const auto& [from, line, lines] : {std::tuple{0U, 1U, 2U}, {1U, 4U, 1U}, {5U, 1U, 2U}}) {
        EXPECT_EQ(screen.NextProblem(from)->firstLine, line);
        EXPECT_EQ(screen.NextProblem(from)->lines, lines);
    }
    screen.Halt();
    screen.EndRun();
    EXPECT_TRUE(went().ends_with(" · 1 failed · 1 not begun"));
    EXPECT_EQ(screen.Caption(), "Report: " + went());
    EXPECT_EQ(screen.Outcome().GetVerdict(), Verdict::Bad);
    screen.BeginRun(Purpose::Encrypt); // a listing, say
    EXPECT_FALSE(screen.ShowsOutcome());
    EXPECT_TRUE(went().starts_with("2 encrypted")) << "the main window still tells it";
    add(EntryKind::Failed, "f");
    screen.AppendToReport(std::string(1000, 'x'));
    user.Expect(ReportFullQuestion(), Answer::Yes);
    screen.ReportBufferFull();
    ASSERT_NE(screen.NextProblem(0), nullptr) << "it stands before what was cut off";
    add(EntryKind::Failed, "g");
    EXPECT_EQ(screen.Problems().size(), 1U) << "one without an entry leads nowhere";
}

TEST_F(ReportScreenTest, CopiesTheSelectionOrElseEverything) {
    screen.AppendToReport("one\r\ntwo");
    for (const auto& [selected, copied] : {std::pair{"two", "two"}, {"", "one\r\ntwo"}}) {
        screen.CopyPressed(selected);
        EXPECT_EQ(user.clipboard, copied);
    }
}

TEST_F(ReportScreenTest, GoesOnWithoutEntriesWhenTheTextIsFullOrStopsIfTheUserSaysSo) {
    screen.BeginRun(Purpose::Encrypt);
    screen.AppendToReport(std::string(999, 'x'));
    EXPECT_FALSE(screen.IsFull());
    screen.AppendToReport("\u00e9");
    ASSERT_TRUE(screen.IsFull()) << "a character counts once, however many bytes it has";
    user.Expect(ReportFullQuestion(), Answer::Yes);
    screen.ReportBufferFull();
    EXPECT_EQ(screen.text(), std::string(500, 'x') +
                                 "\r\nThe output report buffer was filled.\r\n"
                                 "Subsequent operations on individual files will continue,\r\n"
                                 "but results will not be reported here.\r\n");
    const std::string before = screen.text();
    screen.AppendToReport("an entry");
    EXPECT_EQ(screen.text(), before);
    screen.AppendAlways("summary");
    EXPECT_EQ(screen.text(), before + "summary");
    EXPECT_FALSE(screen.StopRequested());

    screen.BeginRun(Purpose::Decrypt);
    screen.AppendToReport("short");
    user.Expect(ReportFullQuestion(), Answer::No);
    screen.ReportBufferFull();
    EXPECT_EQ(screen.text(), "\r\nThe output report buffer was filled.\r\n"
                             "This operation was terminated at the user's request.\r\n"
                             "Note: Some files were not decrypted.\r\n");
    EXPECT_TRUE(screen.StopRequested());
}

} // namespace
} // namespace zr5::test
