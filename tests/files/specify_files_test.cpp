#include "files/extension_rule.h"
#include "files/specify_input_files.h"
#include "files/specify_output_files.h"
#include "support/desk_fixture.h"

#include <array>
#include <filesystem>

namespace zr5::test {
namespace {

constexpr std::size_t ByExtension = SpecifyFiles::ByExtension;

TEST(Extension, IsTakenWithoutWhatPrecedesItOrRefused) {
    using Row = std::array<std::string, 3>;
    const std::string forbidden =
        "Extension must not contain any of these characters: \\ / : < > | \" * ?";
    for (const auto& [typed, tidy, refusal] :
         {Row{"*.enc", "enc", ""},
          {".enc", "enc", ""},
          {" enc ", "enc", ""},
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

class SpecifyDialogs : public DeskTest {
  protected:
    bool Accept(SpecifyFiles&& rules, std::size_t option, const char* extension = "") {
        rules.Select(option);
        rules.SetExtension(extension);
        return rules.Accept();
    }
    SingleFileChoice choice{user, disk, desk};
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
    std::filesystem::create_directory(folder / "sub");
    EXPECT_TRUE(Accept(dialog(), withSubfolders));
    EXPECT_EQ(desk.Setup().SubfolderAnswer, true);
    EXPECT_EQ(desk.Setup().FilePattern, "*.*");
    EXPECT_EQ(dialog().Selected(), withSubfolders);
    EXPECT_TRUE(Accept(dialog(), SpecifyInputFiles::AllFiles));
    EXPECT_EQ(desk.Setup().SubfolderAnswer, false);
    desk.LeaveFilePattern("report*.doc", SetupDesk::Leaving::Speaking);
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
