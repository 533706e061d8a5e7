#include "files/single_file_choice.h"

#include "support/desk_fixture.h"

#include <filesystem>

namespace zr5::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* InputButton = "Select input file";
constexpr const char* OutputButton = "Specify output file";

class SingleFile : public DeskTest {
  protected:
    SingleFile() { folder.Write("a.txt", "content"); }
    /// Picks a file of the folder; with a reason, it is to be refused.
    void Choose(const std::string& name, const std::string& refusal = {}) {
        ExpectPick("Select file to be encrypted", name, refusal, InputButton);
        choice.ChooseInput(InputButton);
    }
    void ChooseForOutput(const std::string& name, const std::string& refusal = {}) {
        ExpectPick("Specify output file for the encrypted file", name, refusal, OutputButton);
        choice.ChooseOutput(OutputButton);
    }
    void ExpectPick(const char* title, const std::string& name, const std::string& refusal,
                    const char* button) {
        user.ExpectFile(title, folder / name);
        if (refusal.empty()) return;
        user.Expect(Notice((folder / name) + "\r\n" + refusal, button, BoxIcon::Information));
    }
    SingleFileChoice choice{user, disk, desk};
};

TEST_F(SingleFile, IsTakenAsChosenAndItsSizeShown) {
    Choose("a.txt");
    EXPECT_EQ(user.lastPicker.filter, "Any file | *.*");
    EXPECT_EQ(InputPath(), folder / "a.txt");
    EXPECT_EQ(OutputPath(), InputPath());
    EXPECT_EQ(Text("lblSize"), "Size: 7 bytes");
}

TEST_F(SingleFile, IsAskedForInTheWordsOfTheFunctionAndStaysWhenThePickerIsCancelled) {
    desk.SelectFunction(Function::Decrypt);
    for (const bool cancelled : {false, true}) {
        const auto pick = [&](const char* name) {
            return cancelled ? std::nullopt : std::optional(folder / name);
        };
        user.ExpectFile("Select file to be decrypted", pick("a.txt"));
        choice.ChooseInput(InputButton);
        user.ExpectFile("Specify output file for the decrypted file", pick("b.txt"));
        choice.ChooseOutput(OutputButton);
        EXPECT_EQ(InputPath(), folder / "a.txt");
        EXPECT_EQ(OutputPath(), folder / "b.txt");
    }
}

TEST_F(SingleFile, IsRefusedWhenItIsNoReadableFile) {
    folder.MakeSpecials("folder");
    Choose("a.txt");
    Choose("folder", "is a folder, not a file.");
    Choose("link", "is a folder, not a file.");
    Choose("dangling", "is a link that leads nowhere.");
    Choose("pipe", "is a device, pipe or socket, not a file.");
    Choose("missing", "does not exist.");
    EXPECT_EQ(InputPath(), folder / "a.txt");
}

TEST_F(SingleFile, IsResolvedWhenItIsALinkAndMayHaveANameThatIsNoText) {
    folder.MakeSpecials("folder/b.txt");
    folder.Write("folder/b.txt", "x");
    Choose("link");
    EXPECT_EQ(InputPath(), folder / "folder/b.txt");
    EXPECT_EQ(Text("lblSize"), "Size: 1 byte");
    const std::string path = folder.Write("caf\xe9", "x");
    Choose("caf\\xE9");
    EXPECT_EQ(InputPath(), path);
    EXPECT_EQ(Text("lblFiles(0)"), "caf\\xE9");
    // A file whose name really reads like an escape comes first.
    folder.Write("caf\\xE9", "y");
    Choose("caf\\xE9");
    EXPECT_EQ(InputPath(), folder / "caf\\xE9");
}

class OutputFile : public SingleFile {
  protected:
    OutputFile() {
        desk.SelectOutputMode(OutputTarget::SeparateOutput);
        Choose("a.txt");
    }
};

TEST_F(OutputFile, MayBeNewOrExistAndThePickerAsksBeforeOverwriting) {
    EXPECT_EQ(OutputPath(), "");
    ChooseForOutput("new.zr5");
    EXPECT_TRUE(user.lastPicker.asksBeforeOverwriting);
    EXPECT_EQ(user.lastPicker.startFolder, folder.Path());
    EXPECT_EQ(OutputPath(), folder / "new.zr5");
    EXPECT_FALSE(folder.Has("new.zr5")) << "choosing makes no file";
    folder.Write("old.zr5", "x");
    ChooseForOutput("old.zr5");
    EXPECT_EQ(OutputPath(), folder / "old.zr5");
    folder.MakeSpecials("a.txt");
    for (const char* name : {"folder", "new/"})
        ChooseForOutput(name, "is a folder, not a file.");
    EXPECT_EQ(OutputPath(), folder / "old.zr5");
}

TEST_F(OutputFile, CountsAsTheInputByWhateverNameItIsReached) {
    fs::create_hard_link(folder / "a.txt", folder / "hard");
    fs::create_symlink("a.txt", folder / "soft");
    for (const char* name : {"hard", "soft", "a.txt", "./a.txt"}) {
        ChooseForOutput("b.txt");
        ChooseForOutput(name);
        EXPECT_EQ(OutputPath(), InputPath()) << name;
    }
}

TEST_F(OutputFile, IsAskedAboutWhenAnEscapedNameHidesAnExistingFile) {
    const std::string path = folder.Write("caf\xe9", "x");
    for (const Answer answer : {Answer::No, Answer::Yes}) {
        user.ExpectFile("Specify output file for the encrypted file", folder / "caf\\xE9");
        user.Expect(OverwriteQuestion(folder.Path() + "caf\\xE9"), answer);
        choice.ChooseOutput(OutputButton);
        EXPECT_EQ(OutputPath(), answer == Answer::No ? "" : path);
    }
}

} // namespace
} // namespace zr5::test
