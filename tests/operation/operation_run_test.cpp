#include "operation/operation_run.h"

#include "operation/file_listing.h"
#include "operation/operation_fixture.h"

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
    using enum Direction;
    for (const auto& [operation, counts, words] :
         {std::tuple{Encrypt, RandomnessCounts{3, 3, 6}, std::string()},
          {Encrypt, {3, 1, 4}, plain},
          {Decrypt, {3, 1, 4}, plain + warning + "decrypt already-decrypted files!\r\n"},
          {Encrypt, {0, 2, 2}, coded + warning + "encrypt already-encrypted files!\r\n"},
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
        ListFiles(
            setup, machine, screen, "List files to be encrypted", [this] { return stopped; },
            [&] { shown = true; });
        return shown ? screen.text() : "";
    }
    void ExpectNone(const std::string& text) {
        user.Expect(Notice(text, "List files to be encrypted", BoxIcon::Information));
        EXPECT_EQ(List(), "");
    }
    bool stopped = false;
};

TEST_F(Listing, NamesEveryFolderAndFileAndSumsThemUp) {
    folder.Write("a.odg", std::string(1234, 'x'));
    std::filesystem::create_directory(folder / "sub");
    folder.Write("sub/b.BIN", std::string(4096, 'x'));
    kit.fileRandomness = -0.3;
    setup.Operation = Direction::Decrypt;
    user.Expect(Notice("The file with extension bin might cause an anti-virus program to haldt "
                       "program execution.\r\nIf you have anti-virus software running then it is "
                       "recommended that you disable it for this operation.",
                       "Warning!", BoxIcon::Exclamation));
    const std::string path = folder.Path();
    EXPECT_EQ(List(), "Files to be decrypted\r\n"
                      "\r\n" +
                          path + " has 1 matching file and 1 subfolder.\r\n     [1]   " + path +
                          "a.odg (1,234 bytes)   \r\n\r\n" + path +
                          "sub/ has 1 matching file and no subfolders.\r\n     [2] * " + path +
                          "sub/b.BIN (4,096 bytes)   \r\n\r\nNumber of files: 2\r\n"
                          "Number of files with randomness value < 0: 1\r\n"
                          "Number of files with randomness value > 0: 0\r\n");
    EXPECT_EQ(screen.PausedDoneText(), "Done");
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
    stopped = true;
    ExpectNone("1 subfolders of " + path +
               " were checked\r\nand there are no files *.txt\r\nin this folder or any of these "
               "1 subfolders\r\n(but perhaps in others).");
}

} // namespace
} // namespace zr5::test
