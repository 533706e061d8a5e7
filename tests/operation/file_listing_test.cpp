#include "operation/file_listing.h"

#include "operation/operation_fixture.h"

#include <filesystem>

namespace zr5::test {
namespace {

class Listing : public OperationTest {
  protected:
    Listing() {
        setup.InputMode = InputSource::FilesInAFolder;
        setup.Folder = {folder.Path(), folder.Path()};
        setup.SubfolderAnswer = true;
    }
    /// The listing's text; empty when the report screen was not opened.
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
    setup.Operation = Function::Decrypt;
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

TEST_F(Listing, EndsAtTheMaximumOrWhenStoppedInAPause) {
    setup.MaxNumFiles = 5;
    for (int i = 0; i < 8; ++i)
        folder.Write(std::to_string(i), "x");
    EXPECT_NE(List().find("\r\nNumber of files to this point: 5\r\n"), std::string::npos);
    int events = 0;
    user.onEvents = [&] {
        if (screen.state() == ReportScreen::State::Paused) screen.StopPressed();
        if (screen.IsRunning() && ++events == 2) screen.PauseContinuePressed();
    };
    EXPECT_NE(List().find("\r\nNumber of files to this point: 2\r\n"), std::string::npos);
    EXPECT_EQ(screen.PausedDoneText(), "Stopped");
    EXPECT_EQ(events, 3);
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
