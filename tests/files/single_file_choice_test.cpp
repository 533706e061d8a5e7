#include "files/single_file_choice.h"

#include "support/scripted_user.h"
#include "support/temporary_folder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace zr5 {
namespace {

namespace fs = std::filesystem;

constexpr const char* InputButton = "Select input file";
constexpr const char* OutputButton = "Specify output file";

/// Remembers what the pickers were asked for.
class PickingUser : public test::ScriptedUser {
  public:
    std::optional<std::string> PickFile(const FilePicker& picker) override {
        lastPicker = picker;
        return ScriptedUser::PickFile(picker);
    }
    FilePicker lastPicker;
};

class SingleFile : public testing::Test {
  protected:
    SingleFile() {
        desk.ResetSetup();
        folder.Write("a.txt", "content");
    }
    void Choose(const std::string& path) {
        user.ExpectFile("Select file to be encrypted", path);
        choice.ChooseInput(InputButton);
    }
    void ChooseForOutput(const std::string& path) {
        user.ExpectFile("Specify output file for the encrypted file", path);
        choice.ChooseOutput(OutputButton);
    }
    void ExpectRefusal(const std::string& shownPath, const std::string& reason,
                       const char* button) {
        user.Expect(Notice(shownPath + "\r\n" + reason, button, BoxIcon::Information));
    }
    [[nodiscard]] std::string InputPath() const { return desk.Setup().FilePath(Input); }
    [[nodiscard]] std::string OutputPath() const { return desk.Setup().FilePath(Output); }

    test::TemporaryFolder folder;
    PickingUser user;
    std::unique_ptr<FileSystem> fileSystem = MakeSystemFileSystem();
    SetupDesk desk{user, *fileSystem, [](std::int16_t) { return "Same as input"; }};
    SingleFileChoice choice{user, *fileSystem, desk};
};

TEST_F(SingleFile, IsTakenAsChosenAndItsSizeShown) {
    Choose(folder / "a.txt");
    EXPECT_EQ(user.lastPicker.filter, "Any file | *.*");
    EXPECT_EQ(desk.Setup().Folder[Input], folder.Path());
    EXPECT_EQ(desk.Setup().FileName[Input], "a.txt");
    EXPECT_EQ(OutputPath(), InputPath());
    EXPECT_EQ(desk.Refresh().at("lblSize").text, "Size: 7 bytes");
}

TEST_F(SingleFile, ChangesNothingWhenThePickerIsCancelled) {
    Choose(folder / "a.txt");
    user.ExpectFile("Select file to be encrypted", std::nullopt);
    choice.ChooseInput(InputButton);
    user.ExpectFile("Specify output file for the encrypted file", std::nullopt);
    choice.ChooseOutput(OutputButton);
    EXPECT_EQ(InputPath(), folder / "a.txt");
    EXPECT_EQ(OutputPath(), folder / "a.txt");
}

TEST_F(SingleFile, IsAskedForInTheWordsOfTheFunction) {
    desk.SelectFunction(Function::Decrypt);
    user.ExpectFile("Select file to be decrypted", folder / "a.txt");
    choice.ChooseInput(InputButton);
    user.ExpectFile("Specify output file for the decrypted file", folder / "b.txt");
    choice.ChooseOutput(OutputButton);
    EXPECT_EQ(OutputPath(), folder / "b.txt");
}

TEST_F(SingleFile, IsResolvedWhenItIsALink) {
    fs::create_directory(folder / "real");
    folder.Write("real/b.txt", "x");
    fs::create_symlink(folder / "real/b.txt", folder / "link");
    Choose(folder / "link");
    EXPECT_EQ(InputPath(), folder / "real/b.txt");
}

TEST_F(SingleFile, IsRefusedWhenItIsNoReadableFile) {
    fs::create_directory(folder / "sub");
    fs::create_symlink(folder / "sub", folder / "to folder");
    fs::create_symlink("nowhere", folder / "broken");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    const struct {
        const char* name;
        const char* reason;
    } cases[] = {{"sub", "is a folder, not a file."},
                 {"to folder", "is a folder, not a file."},
                 {"broken", "is a link that leads nowhere."},
                 {"pipe", "is a device, pipe or socket, not a file."},
                 {"missing", "does not exist."}};
    Choose(folder / "a.txt");
    for (const auto& [name, reason] : cases) {
        user.ExpectFile("Select file to be encrypted", folder / name);
        ExpectRefusal(folder / name, reason, InputButton);
        choice.ChooseInput(InputButton);
    }
    EXPECT_EQ(InputPath(), folder / "a.txt");
}

TEST_F(SingleFile, MayHaveANameThatIsNoText) {
    const std::string path = folder.Write("caf\xe9", "x");
    Choose(folder / "caf\\xE9");
    EXPECT_EQ(InputPath(), path);
    EXPECT_EQ(desk.Refresh().at("lblFiles(0)").text, "caf\\xE9");
    // A file whose name really reads like an escape comes first.
    folder.Write("caf\\xE9", "y");
    Choose(folder / "caf\\xE9");
    EXPECT_EQ(InputPath(), folder / "caf\\xE9");
}

class OutputFile : public SingleFile {
  protected:
    OutputFile() {
        desk.SelectOutputMode(OutputTarget::SeparateOutput);
        Choose(folder / "a.txt");
    }
};

TEST_F(OutputFile, MayBeNewOrExistAndThePickerAsksBeforeOverwriting) {
    EXPECT_EQ(OutputPath(), "");
    ChooseForOutput(folder / "new.zr5");
    EXPECT_TRUE(user.lastPicker.asksBeforeOverwriting);
    EXPECT_EQ(user.lastPicker.startFolder, folder.Path());
    EXPECT_EQ(OutputPath(), folder / "new.zr5");
    EXPECT_FALSE(folder.Has("new.zr5")) << "choosing makes no file";
    folder.Write("old.zr5", "x");
    ChooseForOutput(folder / "old.zr5");
    EXPECT_EQ(OutputPath(), folder / "old.zr5");
}

TEST_F(OutputFile, CountsAsTheInputByWhateverNameItIsReached) {
    fs::create_hard_link(folder / "a.txt", folder / "hard");
    fs::create_symlink("a.txt", folder / "soft");
    for (const char* name : {"hard", "soft", "a.txt", "./a.txt"}) {
        ChooseForOutput(folder / "b.txt");
        ChooseForOutput(folder / name);
        EXPECT_EQ(OutputPath(), InputPath()) << name;
    }
}

TEST_F(OutputFile, IsRefusedWhenItIsAFolder) {
    fs::create_directory(folder / "sub");
    const struct {
        const char* name;
        const char* reason;
    } cases[] = {{"sub", "is a folder, not a file."}, {"new/", "is a folder, not a file."}};
    for (const auto& [name, reason] : cases) {
        user.ExpectFile("Specify output file for the encrypted file", folder / name);
        ExpectRefusal(folder / name, reason, OutputButton);
        choice.ChooseOutput(OutputButton);
        EXPECT_EQ(OutputPath(), "") << name;
    }
}

TEST_F(OutputFile, IsAskedAboutWhenAnEscapedNameHidesAnExistingFile) {
    const std::string path = folder.Write("caf\xe9", "x");
    const auto box = Question("Overwrite existing file " + folder.Path() + "caf\\xE9?",
                              "File exists already.", BoxIcon::Question, Answer::No);
    user.ExpectFile("Specify output file for the encrypted file", folder / "caf\\xE9");
    user.Expect(box, Answer::No);
    choice.ChooseOutput(OutputButton);
    EXPECT_EQ(OutputPath(), "");
    user.ExpectFile("Specify output file for the encrypted file", folder / "caf\\xE9");
    user.Expect(box, Answer::Yes);
    choice.ChooseOutput(OutputButton);
    EXPECT_EQ(OutputPath(), path);
}

} // namespace
} // namespace zr5
