#include "operation/operation_run.h"

#include "operation/operation_fixture.h"

namespace zr5::test {
namespace {

class OperationRun : public OperationTest {
  protected:
    void ListFiles(std::size_t count, const std::string& extension = "odg") {
        for (std::size_t i = 0; i < count; ++i) {
            const std::string name = std::to_string(list.size()) + "." + extension;
            folder.Write(name, "abc");
            list.push_back({WorkItem::Kind::File, folder / name, folder / name});
        }
    }
    std::string Run() {
        RunOperation(Context(), screen);
        return screen.text();
    }
};

TEST_F(OperationRun, OpensWithTheCountAndClosesWithTheSummary) {
    folder.Write("a.odg", "abc");
    ChooseInput("a.odg");
    screen.AppendAlways("of the run before");
    engine.onFile = [this](const std::string&, const std::string& output) {
        std::ofstream(output) << "four";
        clock.now += std::chrono::milliseconds(2400);
    };
    EXPECT_EQ(Run(), "Number of files: 1\r\n\r\nEncrypting " + (folder / "a.odg") +
                         " to a file with same name.\r\n"
                         "         a.odg 3 bytes   -> 4 bytes\r\n"
                         "\r\nNumber of files processed: 1\r\nNumber of files encrypted: 1\r\n"
                         "Total KB encrypted: 0.00\r\nElapsed time: 2 seconds\r\n");
    EXPECT_EQ(screen.PausedDoneText(), "Done");
    EXPECT_FALSE(engine.progress) << "the engine must not keep a way into a run that is over";
}

TEST_F(OperationRun, ShowsTheProgressOfAFileAndLetsTheInterfaceReact) {
    folder.Write("a.odg", "abc");
    ChooseInput("a.odg");
    int events = 0;
    user.onEvents = [&] { ++events; };
    engine.onFile = [&](const std::string&, const std::string& output) {
        std::ofstream(output) << "x";
        const int before = events;
        engine.progress(1, 2);
        EXPECT_EQ(events, before + 1);
        EXPECT_EQ(screen.Progress().file.name, "a.odg");
        EXPECT_EQ(screen.Progress().file.ofPass, 0.5);
    };
    static_cast<void>(Run());
    EXPECT_EQ(screen.Progress().file.name, "");
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
    static_cast<void>(Run());
    EXPECT_EQ(screen.counters.filesProcessed, 9U);
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
    ListFiles(2);
    setup.OutputMode = OutputTarget::SeparateOutput;
    setup.FileName[Output] = "*.enc";
    list[0].outputPath = list[1].outputPath = folder / "same.enc";
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
    RunOperation(Context(), tiny);
    EXPECT_TRUE(engine.calls.empty());
    ReportScreen small(user, clock, 300);
    user.Expect(ReportFullQuestion(), Answer::Yes);
    RunOperation(Context(), small);
    EXPECT_EQ(small.counters.filesProcessed, 9U);
    EXPECT_NE(small.text().find("Number of files processed: 9"), std::string::npos);
}

TEST(RandomnessSummary, IndicatesWhatMostFilesAre) {
    const std::string indicates = "This indicates that all or most files are ";
    const std::string plain = indicates + "not already encrypted or compressed.\r\n";
    const std::string coded = indicates + "already encrypted or compressed.\r\n";
    const std::string warning = "Warning: You may be trying to ";
    const struct {
        Function operation;
        RandomnessCounts counts;
        std::string text;
    } cases[] = {
        {Function::Encrypt, {3, 3, 6}, ""},
        {Function::Encrypt, {3, 1, 4}, plain},
        {Function::Decrypt, {3, 1, 4}, plain + warning + "decrypt already-decrypted files!\r\n"},
        {Function::Encrypt, {0, 2, 2}, coded + warning + "encrypt already-encrypted files!\r\n"},
        {Function::Decrypt, {0, 2, 2}, coded}};
    for (const auto& [operation, counts, text] : cases) {
        EXPECT_EQ(
            ListingSummaryText(operation, {7, true, counts}),
            "Number of files to this point: 7\r\nNumber of files with randomness value < 0: " +
                std::to_string(counts.below) + "\r\nNumber of files with randomness value > 0: " +
                std::to_string(counts.above) + "\r\n" + text);
    }
}

TEST(Kilobytes, LoseTheirDecimalsFromAThousandOn) {
    for (const auto& [bytes, text] :
         {std::pair{1'023'999U, "1,000.00"}, {1'024'000U, "1,000"}, {1536U, "1.50"}})
        EXPECT_EQ(KilobytesText(bytes), text);
}

} // namespace
} // namespace zr5::test
