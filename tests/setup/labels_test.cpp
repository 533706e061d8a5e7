#include "setup/labels.h"

#include <gtest/gtest.h>

namespace zr5 {
namespace {

std::string Texts(std::int16_t number) {
    switch (number) {
    case TextSameAsInputFolder:
        return "Same as input folder";
    case TextSameAsInputFile:
        return "Same as input file";
    case TextSameAsInputFiles:
        return "Same as input files";
    default:
        return {};
    }
}

std::string NoTexts(std::int16_t) {
    return {};
}

const std::string LongFolder = "/home/someone/Documents/Correspondence with many people/2026/";

OperationSetup SingleFileSetup() {
    OperationSetup setup;
    setup.Folder = {LongFolder, "/out/"};
    setup.FileName = {"letter.txt", "letter.zr5"};
    setup.OutputMode = OutputTarget::SeparateOutput;
    RewriteCaptions(setup, Texts);
    return setup;
}

OperationSetup FolderSetup(const std::string& pattern) {
    OperationSetup setup;
    setup.InputMode = InputSource::FilesInAFolder;
    setup.Folder = {"/in/", "/in/"};
    setup.FilePattern = pattern;
    setup.FileName = {pattern, pattern};
    RewriteCaptions(setup, Texts);
    return setup;
}

TEST(Labels, AreShortenedToTheirWidthWithTheWholeInTheToolTip) {
    const std::string label = LabelFor(LongFolder);
    EXPECT_EQ(label.size(), LabelWidth);
    EXPECT_TRUE(label.starts_with("/ho..."));
    EXPECT_EQ(ToolTipFor(label, LongFolder), LongFolder);

    const std::string justFits = "/" + std::string(LabelWidth - 2, 'a') + "/";
    EXPECT_EQ(LabelFor(justFits), justFits);
    EXPECT_EQ(ToolTipFor(justFits, justFits), "");
    EXPECT_EQ(ToolTipFor("Same as input folder", LongFolder), "");
}

TEST(Labels, ShowNamesThatAreNoTextWithEscapes) {
    EXPECT_EQ(LabelFor("caf\xe9.txt"), "caf\\xE9.txt");
}

TEST(PatternLabel, HasAColonAfterAFolderChoiceAndNoneAfterAnEdit) {
    using enum PatternLabel;
    EXPECT_EQ(PatternLabelFor("*.*", AfterEdit), "All files");
    EXPECT_EQ(PatternLabelFor("*.txt", AfterEdit), "All files matching *.txt");
    EXPECT_EQ(PatternLabelFor("*.txt", AfterFolderChoice), "All files matching: *.txt");
    EXPECT_EQ(PatternLabelFor("abcdefgh.txt", AfterEdit), "All files matching abcdefgh.txt");
    EXPECT_EQ(PatternLabelFor("abcdefghi.txt", AfterEdit), "All files matching abc...hi.txt");
    EXPECT_EQ(PatternToolTipFor("All files matching abc...hi.txt", "abcdefghi.txt"),
              "abcdefghi.txt");
}

TEST(PatternLabel, KeepsItsFormWhenLabelsAreWrittenAnew) {
    OperationSetup setup = FolderSetup("*.txt");
    EXPECT_EQ(setup.FilesCaption[Input], "All files matching: *.txt");
    setup.FilesCaption[Input] = "All files matching *.txt";
    RewriteCaptions(setup, Texts);
    EXPECT_EQ(setup.FilesCaption[Input], "All files matching *.txt");
}

TEST(EqualityNotes, FollowTheKindOfInputAndComeForEqualPathsOnly) {
    OperationSetup setup = FolderSetup("*.txt");
    EXPECT_EQ(setup.FolderCaption[Output], "Same as input folder");
    EXPECT_EQ(setup.FilesCaption[Output], "Same as input files");

    setup = SingleFileSetup();
    EXPECT_EQ(setup.FolderCaption[Output], "/out/");
    EXPECT_EQ(setup.FilesCaption[Output], "letter.zr5");
    setup.FileName[Output] = setup.FileName[Input];
    RewriteCaptions(setup, Texts);
    EXPECT_EQ(setup.FolderCaption[Output], "/out/");
    EXPECT_EQ(setup.FilesCaption[Output], "Same as input file");

    OperationSetup empty;
    RewriteCaptions(empty, Texts);
    EXPECT_EQ(empty.FolderCaption[Output], "");
    EXPECT_EQ(empty.FilesCaption[Output], "");
}

struct Disagreement {
    const char* name;
    int code;
    OperationSetup setup;
    void (*change)(OperationSetup&);
};

class Consistency : public testing::TestWithParam<Disagreement> {};

TEST_P(Consistency, FindsTheFirstDisagreement) {
    OperationSetup setup = GetParam().setup;
    ASSERT_EQ(CheckConsistency(setup, Texts), 0);
    GetParam().change(setup);
    EXPECT_EQ(CheckConsistency(setup, Texts), GetParam().code);
}

INSTANTIATE_TEST_SUITE_P(
    Disagrees, Consistency,
    testing::Values(
        Disagreement{"InputFolder", -1, SingleFileSetup(),
                     [](OperationSetup& s) { s.FolderCaption[Input] = "/ho...7/"; }},
        Disagreement{"InputFolderNotShown", -1, SingleFileSetup(),
                     [](OperationSetup& s) { s.FolderCaption[Input].clear(); }},
        Disagreement{"InputName", -2, SingleFileSetup(),
                     [](OperationSetup& s) { s.FilesCaption[Input] = "other.txt"; }},
        Disagreement{"AllFilesWithANarrowerPattern", -3, FolderSetup("*.txt"),
                     [](OperationSetup& s) { s.FilesCaption[Input] = "All files"; }},
        Disagreement{"PatternLabel", -4, FolderSetup("*.txt"),
                     [](OperationSetup& s) { s.FilesCaption[Input] = "All files matching *.doc"; }},
        Disagreement{"BarePatternAsLabel", -4, FolderSetup("*.txt"),
                     [](OperationSetup& s) { s.FilesCaption[Input] = "*.txt"; }},
        Disagreement{"SameFolderThatIsNot", -5, SingleFileSetup(),
                     [](OperationSetup& s) { s.FolderCaption[Output] = "Same as input folder"; }},
        Disagreement{"OutputFolder", -6, SingleFileSetup(),
                     [](OperationSetup& s) { s.FolderCaption[Output] = "/elsewhere/"; }},
        Disagreement{"SameNameThatIsNot", -7, SingleFileSetup(),
                     [](OperationSetup& s) { s.FilesCaption[Output] = "Same as input file"; }},
        Disagreement{"OutputName", -8, SingleFileSetup(),
                     [](OperationSetup& s) { s.FilesCaption[Output].clear(); }},
        Disagreement{"FolderWithSeparateOutput", -9, FolderSetup("*.*"),
                     [](OperationSetup& s) { s.OutputMode = OutputTarget::SeparateOutput; }},
        Disagreement{"InputComesBeforeOutput", -2, SingleFileSetup(),
                     [](OperationSetup& s) {
                         s.FilesCaption = {"x", "y"};
                     }}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(ConsistencyCheck, AcceptsEveryFormThatALabelMayHave) {
    OperationSetup setup = SingleFileSetup();
    setup.FolderCaption[Input] = LongFolder; // the full path where there is room
    EXPECT_EQ(CheckConsistency(setup, Texts), 0);
    setup.FolderCaption[Input] = "/ho...le/2026/"; // shortened to another width
    EXPECT_EQ(CheckConsistency(setup, Texts), 0);
    for (const char* caption : {"...", "/ho...", "/home...le/2026/", "/ho...la/2026/"}) {
        setup.FolderCaption[Input] = caption;
        EXPECT_EQ(CheckConsistency(setup, Texts), -1) << caption;
    }

    setup = FolderSetup("abcdefghi.txt");
    for (const char* caption :
         {"All files matching abcdefghi.txt", "All files matching: abcdefghi.txt",
          "All files matching abc...hi.txt"}) {
        setup.FilesCaption[Input] = caption;
        EXPECT_EQ(CheckConsistency(setup, Texts), 0) << caption;
    }
}

TEST(ConsistencyCheck, AcceptsAnEmptyNoteWhenTheProgramTextsAreMissing) {
    OperationSetup setup = FolderSetup("*.txt");
    RewriteCaptions(setup, NoTexts);
    EXPECT_EQ(setup.FolderCaption[Output], "");
    EXPECT_EQ(CheckConsistency(setup, NoTexts), 0);
    setup.Folder[Output] = "/elsewhere/";
    EXPECT_NE(CheckConsistency(setup, NoTexts), 0);
}

} // namespace
} // namespace zr5
