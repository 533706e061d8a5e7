#include "files/folder_choice.h"

#include "support/desk_fixture.h"

#include <filesystem>

namespace zr5::test {
namespace {

class InputFolder : public DeskTest {
  protected:
    InputFolder() {
        desk.SelectInputMode(InputSource::FilesInAFolder);
        std::filesystem::create_directories(folder / "sub/deep");
    }
    void Choose(const std::optional<std::string>& path) {
        user.ExpectFolder("Specify input folder", path);
        choice.ChooseInput("Select input folder", [this] { return stopped; });
    }
    bool stopped = false;
    FolderChoice choice{user, disk, desk};
};

TEST_F(InputFolder, IsTakenWithItsSeparatorAndItsFilesAreNamedByThePattern) {
    folder.Write("sub/deep/a.txt", "x"); // the only file lies in a subfolder
    Choose(folder / "sub");
    EXPECT_EQ(desk.Setup().Folder[Input], folder / "sub/");
    EXPECT_EQ(desk.Setup().Folder[Output], folder / "sub/");
    EXPECT_EQ(Text("lblFiles(0)"), "All files");
    EXPECT_TRUE(desk.LeaveFilePattern("*.txt", SetupDesk::Leaving::Speaking));
    EXPECT_EQ(Text("lblFiles(0)"), "All files matching *.txt");
    EXPECT_EQ(desk.Setup().FileName, (std::array<std::string, 2>{"*.txt", "*.txt"}));
    EXPECT_EQ(desk.CheckLabels(), 0);
    Choose(folder / "sub");
    EXPECT_EQ(Text("lblFiles(0)"), "All files matching: *.txt");
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
} // namespace zr5::test
