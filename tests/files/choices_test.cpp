#include "files/extension_rule.h"
#include "files/file_choice.h"
#include "files/specify_files.h"
#include "support/fixtures.h"

#include <filesystem>

// How input and output are chosen: a folder, a single file, and several by their extension.

namespace zr5::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* InputButton = "Select input file";
constexpr const char* OutputButton = "Specify output file";

class InputFolder : public DeskTest {
  protected:
    InputFolder() {
        desk.SelectInputMode(InputSource::FilesInAFolder);
        fs::create_directories(folder / "sub/deep");
    }
    void Choose(const std::optional<std::string>& path, const std::optional<MessageBox>& box = {}) {
        user.ExpectFolder("Specify input folder", path);
        if (box) user.Expect(*box);
        choice.ChooseInput("Select input folder", [this] { return stopped; });
    }
    bool stopped = false;
    FolderChoice choice{machine, desk};
};

TEST_F(InputFolder, IsTakenWithItsSeparatorAndItsFilesAreNamedByThePattern) {
    folder.Write("sub/deep/a.txt", "x"); // the only file lies in a subfolder
    Choose(folder / "sub");
    EXPECT_EQ(desk.Setup().Folder[InputSide], folder / "sub/");
    EXPECT_EQ(desk.Setup().Folder[OutputSide], folder / "sub/");
    EXPECT_EQ(Text("lblFiles(0)"), "All files");
    EXPECT_TRUE(desk.LeaveFilePattern("  *.txt "));
    EXPECT_EQ(Text("lblFiles(0)"), "All files matching *.txt");
    EXPECT_EQ(desk.Setup().FileName, (std::array<std::string, 2>{"*.txt", "*.txt"}));
    EXPECT_EQ(Text("lblFiles(1)"), "Same as input files");
    EXPECT_EQ(desk.CheckLabels(), 0);
    Choose(folder / "sub");
    EXPECT_EQ(Text("lblFiles(0)"), "All files matching: *.txt");
}

TEST_F(InputFolder, IsRefusedWhenItIsForbiddenOrHoldsNoFile) {
    folder.Write("sub/a", "x");
    Choose(folder / "sub");
    fs::create_directory_symlink("/usr/share", folder / "way");
    Choose(folder / "way", Notice("A 'usr' folder cannot be selected.", "Select input folder",
                                  BoxIcon::Information));
    Choose(folder / "sub/deep", Notice(folder.Path() + "sub/deep/ contains no files.", "No files",
                                       BoxIcon::Information));
    for (const auto& [name, reason] :
         {std::pair{"missing", "does not exist."}, {"sub/a", "is no folder."}})
        Choose(folder / name, Notice((folder / name) + "\r\n" + reason, "Select input folder",
                                     BoxIcon::Information));
    Choose(std::nullopt);
    stopped = true; // before any file was met
    Choose(folder.Path());
    EXPECT_EQ(desk.Setup().Folder[InputSide], folder / "sub/");
}

TEST_F(InputFolder, IsSearchedInSightAfterHalfASecondAndNotTakenWhenTheUserStops) {
    for (const char* name : {"1", "2", "3", "4", "5", "6", "7"})
        fs::create_directories(folder / (std::string("sub/deep/") + name));
    user.onEvents = [&] {
        clock.now += std::chrono::milliseconds(200);
        if (user.isWorkShown) user.shownWork.back().stop();
    };
    const std::string path = folder / "sub/";
    Choose(path, Notice("1 subfolders of " + path +
                            " were checked\r\nand there are no files\r\nin this folder or any of "
                            "these 1 subfolders\r\n(but perhaps in others).",
                        "No files", BoxIcon::Information));
    EXPECT_EQ(desk.Setup().Folder[InputSide], "");
    ASSERT_EQ(user.shownWork.size(), 1U);
    EXPECT_EQ(user.shownWork[0].text, "Searching " + path + "\r\n\r\n0 files found in 2 folders");
    EXPECT_FALSE(user.isWorkShown) << "before the box";
}

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

TEST_F(SingleFile, IsAskedForInTheWordsOfTheFunctionAndStaysWhenThePickerIsCancelled) {
    desk.SelectFunction(Direction::Decrypt);
    for (const bool cancelled : {false, true}) {
        const auto pick = [&](const char* name) {
            return cancelled ? std::nullopt : std::optional(folder / name);
        };
        user.ExpectFile("Select file to be decrypted", pick("a.txt"));
        choice.ChooseInput(InputButton);
        EXPECT_EQ(user.lastPicker.filter, "Any file | *.*");
        user.ExpectFile("Specify output file for the decrypted file", pick("b.txt"));
        choice.ChooseOutput(OutputButton);
        EXPECT_EQ(user.lastPicker.suggestedName, "") << "of what is no name of the program's";
        EXPECT_EQ(InputPath(), folder / "a.txt");
        EXPECT_EQ(OutputPath(), folder / "b.txt");
        EXPECT_EQ(Text("lblSize"), "Size: 7 bytes");
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
    folder.Write("old.zr5", "z");
    Choose("old.zr5");
    desk.SelectFunction(Direction::Decrypt);
    user.ExpectFile("Specify output file for the decrypted file", std::nullopt);
    choice.ChooseOutput(OutputButton);
    EXPECT_EQ(user.lastPicker.suggestedName, "old");
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
    EXPECT_EQ(user.lastPicker.suggestedName, "a.txt.zr5");
    EXPECT_TRUE(user.lastPicker.asksBeforeOverwriting);
    EXPECT_EQ(user.lastPicker.startFolder, folder.Path());
    EXPECT_EQ(OutputPath(), folder / "new.zr5");
    EXPECT_FALSE(folder.Has("new.zr5")) << "choosing makes no file";
    folder.Write("old.zr5", "x");
    ChooseForOutput("old.zr5");
    folder.MakeSpecials("a.txt");
    for (const char* name : {"folder", "new/"})
        ChooseForOutput(name, "is a folder, not a file.");
    ChooseForOutput("missing/new", "cannot be written: no file can be made in its folder.");
    EXPECT_EQ(OutputPath(), folder / "old.zr5");
    fs::create_hard_link(folder / "a.txt", folder / "hard");
    ChooseForOutput("hard");
    EXPECT_EQ(OutputPath(), InputPath()) << "by whatever name it is reached";
    ChooseForOutput("old.zr5");
    const std::string unspeakable = folder.Write("caf\xe9", "x"); // the picker asks about no such
    for (const Answer answer : {Answer::No, Answer::Yes}) {
        user.ExpectFile("Specify output file for the encrypted file", folder / "caf\\xE9");
        user.Expect(OverwriteQuestion(folder / "caf\\xE9"), answer);
        choice.ChooseOutput(OutputButton);
        EXPECT_EQ(OutputPath(), answer == Answer::No ? folder / "old.zr5" : unspeakable);
    }
}

constexpr std::size_t ByExtension = SpecifyFiles::ByExtension;

TEST(Extension, IsTakenWithoutWhatPrecedesItOrRefused) {
    using Row = std::array<std::string, 3>;
    const std::string forbidden =
        "Extension must not contain any of these characters: \\ / : < > | \" * ?";
    for (const auto& [typed, tidy, refusal] :
         {Row{"*.enc", "enc", ""},
          {" .enc ", "enc", ""},
          {"tar.gz", "tar.gz", "Extension must not contain \".\""},
          {"..", ".", "Extension must not contain \".\""},
          {"*.", "", "Please specify an extension."},
          {"a/b", "a/b", forbidden},
          {"*.*", "*", forbidden}}) {
        ScriptedUser user;
        if (!refusal.empty()) user.Expect(Notice(refusal, "Error", BoxIcon::Exclamation));
        EXPECT_EQ(TidyExtension(typed), tidy);
        EXPECT_EQ(AcceptsExtension(user, tidy), refusal.empty()) << typed;
    }
}

class SpecifyDialogs : public SingleFile {
  protected:
    bool Accept(SpecifyFiles&& rules, std::size_t option, const char* extension = "") {
        rules.Select(option);
        rules.SetExtension(extension);
        return rules.Accept();
    }
};

TEST_F(SpecifyDialogs, ForTheInputSetPatternAndSubfoldersAndShowThemAgain) {
    desk.SelectInputMode(InputSource::FilesInAFolder);
    desk.SetInputFolder(folder.Path());
    const auto dialog = [&] { return SpecifyInputFiles(user, desk); };
    const std::size_t withSubfolders = SpecifyInputFiles::AllFilesAndSubfolders;

    EXPECT_TRUE(Accept(dialog(), ByExtension, "*.doc"));
    EXPECT_EQ(desk.Setup().FilePattern, "*.doc");
    EXPECT_EQ(dialog().Selected(), ByExtension);
    EXPECT_EQ(dialog().Extension(), "doc");
    user.Expect(Notice(folder.Path() + " has no subfolders.", "Subfolders?", BoxIcon::Information));
    EXPECT_FALSE(Accept(dialog(), withSubfolders));
    EXPECT_EQ(desk.Setup().FilePattern, "*.doc") << "a refusal changes nothing";
    fs::create_directory(folder / "sub");
    EXPECT_TRUE(Accept(dialog(), withSubfolders));
    EXPECT_EQ(desk.Setup().SubfolderAnswer, true);
    EXPECT_EQ(desk.Setup().FilePattern, "*.*");
    EXPECT_EQ(dialog().Selected(), withSubfolders);
    EXPECT_TRUE(Accept(dialog(), SpecifyInputFiles::AllFiles));
    EXPECT_EQ(desk.Setup().SubfolderAnswer, false);
    desk.LeaveFilePattern("report*.doc");
    EXPECT_FALSE(dialog().AcceptIsEnabled()) << "no option says this";
}

TEST_F(SpecifyDialogs, ForTheOutputNameItByExtensionAndAskAboutWhatExists) {
    folder.Write("a.b.txt", "x");
    const std::string old = folder.Write("a.b.enc", "x");
    desk.SelectOutputMode(OutputTarget::SeparateOutput);
    desk.SetInputFile(folder.Path(), "a.b.txt");
    const auto dialog = [&] { return SpecifyOutputFiles(user, disk, desk, choice); };
    EXPECT_TRUE(Accept(dialog(), ByExtension, ".zr5"));
    EXPECT_EQ(OutputPath(), folder / "a.b.zr5");
    EXPECT_EQ(dialog().Extension(), "zr5");
    for (const Answer answer : {Answer::No, Answer::Yes}) {
        user.Expect(OverwriteQuestion(old), answer);
        EXPECT_EQ(Accept(dialog(), ByExtension, "enc"), answer == Answer::Yes);
        EXPECT_EQ(OutputPath(), answer == Answer::Yes ? old : folder / "a.b.zr5");
    }
    EXPECT_TRUE(Accept(dialog(), ByExtension, "txt"));
    EXPECT_EQ(OutputPath(), InputPath());

    const auto pick = [&](std::size_t option, std::optional<std::string> path) {
        user.ExpectFile("Specify output file for the encrypted file", std::move(path));
        return Accept(dialog(), option);
    };
    EXPECT_TRUE(pick(SpecifyOutputFiles::ExistingFile, old));
    EXPECT_FALSE(pick(SpecifyOutputFiles::NewFile, std::nullopt)) << "stays open after a cancel";
    EXPECT_EQ(OutputPath(), old);
    EXPECT_TRUE(pick(SpecifyOutputFiles::NewFile, folder / "new"));
    EXPECT_EQ(dialog().Selected(), SpecifyOutputFiles::NewFile);
    desk.SetInputFile(folder.Path(), ".profile");
    EXPECT_TRUE(Accept(dialog(), ByExtension, "enc"));
    EXPECT_EQ(OutputPath(), folder / ".profile.enc");
}

} // namespace
} // namespace zr5::test
