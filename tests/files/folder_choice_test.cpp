#include "files/folder_choice.h"

#include "support/scripted_user.h"
#include "support/temporary_folder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace zr5 {
namespace {

class InputFolder : public testing::Test {
  protected:
    InputFolder() {
        desk.ResetSetup();
        desk.SelectInputMode(InputSource::FilesInAFolder);
        std::filesystem::create_directories(folder / "sub/deep");
    }
    void Choose(const std::optional<std::string>& path) {
        user.ExpectFolder("Specify input folder", path);
        choice.ChooseInput("Select input folder", [this] { return stopped; });
    }
    bool stopped = false;
    test::TemporaryFolder folder;
    test::ScriptedUser user;
    std::unique_ptr<FileSystem> fileSystem = MakeSystemFileSystem();
    SetupDesk desk{user, *fileSystem, [](std::int16_t) { return "Same as input folder"; }};
    FolderChoice choice{user, *fileSystem, desk};
};

TEST_F(InputFolder, IsTakenWithItsSeparatorAndItsFilesAreNamedByThePattern) {
    folder.Write("sub/deep/a.txt", "x"); // the only file lies in a subfolder
    Choose(folder / "sub");
    EXPECT_EQ(desk.Setup().Folder[Input], folder / "sub/");
    EXPECT_EQ(desk.Setup().Folder[Output], folder / "sub/");
    EXPECT_EQ(desk.Refresh().at("lblFiles(0)").text, "All files");
    EXPECT_EQ(desk.CheckLabels(), 0);
    EXPECT_TRUE(desk.LeaveFilePattern("*.txt", SetupDesk::Leaving::Speaking));
    EXPECT_EQ(desk.Refresh().at("lblFiles(0)").text, "All files matching *.txt");
    Choose(folder / "sub");
    EXPECT_EQ(desk.Refresh().at("lblFiles(0)").text, "All files matching: *.txt");
    EXPECT_EQ(desk.Setup().FileName[Output], "*.txt");
}

TEST_F(InputFolder, IsRefusedWhenItIsForbiddenOrHoldsNoFile) {
    folder.Write("sub/a", "x");
    Choose(folder / "sub");
    std::filesystem::create_directory_symlink("/usr/share", folder / "way");
    user.ExpectFolder("Specify input folder", folder / "way");
    user.Expect(
        Notice("A 'usr' folder cannot be selected.", "Select input folder", BoxIcon::Information));
    choice.ChooseInput("Select input folder", [this] { return stopped; });
    user.ExpectFolder("Specify input folder", folder / "sub/deep");
    user.Expect(
        Notice(folder.Path() + "sub/deep/ contains no files.", "No files", BoxIcon::Information));
    choice.ChooseInput("Select input folder", [this] { return stopped; });
    Choose(std::nullopt);
    stopped = true; // before any file was met
    Choose(folder.Path());
    EXPECT_EQ(desk.Setup().Folder[Input], folder / "sub/");
}

} // namespace
} // namespace zr5
