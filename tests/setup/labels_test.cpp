#include "setup/labels.h"

#include "support/desk_fixture.h"

#include <gtest/gtest.h>

namespace zr5::test {
namespace {

constexpr auto Texts = EqualityNotes;

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
    EXPECT_EQ(LabelFor("caf\xe9.txt"), "caf\\xE9.txt") << "no text: with escapes";
}

TEST(PatternLabel, HasAColonAfterAFolderChoiceAndNoneAfterAnEdit) {
    using enum PatternLabel;
    EXPECT_EQ(PatternLabelFor("*.*", AfterEdit), "All files");
    EXPECT_EQ(PatternLabelFor("*.txt", AfterFolderChoice), "All files matching: *.txt");
    EXPECT_EQ(PatternLabelFor("abcdefgh.txt", AfterEdit), "All files matching abcdefgh.txt");
    EXPECT_EQ(PatternLabelFor("abcdefghi.txt", AfterEdit), "All files matching abc...hi.txt");
    EXPECT_EQ(PatternToolTipFor("All files matching abc...hi.txt", "abcdefghi.txt"),
              "abcdefghi.txt");
    OperationSetup setup = FolderSetup("*.txt");
    EXPECT_EQ(setup.FilesCaption[Input], "All files matching: *.txt");
    setup.FilesCaption[Input] = "All files matching *.txt";
    RewriteCaptions(setup, Texts);
    EXPECT_EQ(setup.FilesCaption[Input], "All files matching *.txt") << "written anew";
}

TEST(EqualityNotes, FollowTheKindOfInputAndComeForEqualPathsOnly) {
    OperationSetup setup = FolderSetup("*.txt");
    EXPECT_EQ(setup.FolderCaption[Output], "Same as input folder");
    EXPECT_EQ(setup.FilesCaption[Output], "Same as input files");

    setup = SingleFileSetup();
    EXPECT_EQ(setup.FilesCaption[Output], "letter.zr5");
    setup.FileName[Output] = setup.FileName[Input];
    RewriteCaptions(setup, Texts);
    EXPECT_EQ(setup.FolderCaption[Output], "/out/");
    EXPECT_EQ(setup.FilesCaption[Output], "Same as input file");

    setup = {};
    RewriteCaptions(setup, Texts);
    EXPECT_EQ(setup.FolderCaption[Output] + setup.FilesCaption[Output], "");
}

TEST(ConsistencyCheck, FindsTheFirstDisagreement) {
    using S = OperationSetup;
    using Case = std::pair<int, void (*)(S&)>;
    const auto check = [](const S& agreed, std::initializer_list<Case> cases) {
        ASSERT_EQ(CheckConsistency(agreed, Texts), 0);
        for (const auto& [code, change] : cases) {
            S setup = agreed;
            change(setup);
            EXPECT_EQ(CheckConsistency(setup, Texts), code);
        }
    };
    check(SingleFileSetup(), {{-1, [](S& s) { s.FolderCaption[Input] = "/ho...7/"; }},
                              {-1, [](S& s) { s.FolderCaption[Input].clear(); }},
                              {-2, [](S& s) { s.FilesCaption[Input] = "other.txt"; }},
                              {-5, [](S& s) { s.FolderCaption[Output] = "Same as input folder"; }},
                              {-6, [](S& s) { s.FolderCaption[Output] = "/elsewhere/"; }},
                              {-7, [](S& s) { s.FilesCaption[Output] = "Same as input file"; }},
                              {-8, [](S& s) { s.FilesCaption[Output].clear(); }}});
    check(FolderSetup("*.txt"),
          {{-3, [](S& s) { s.FilesCaption[Input] = "All files"; }}, // but the pattern is narrower
           {-4, [](S& s) { s.FilesCaption[Input] = "All files matching *.doc"; }},
           {-4, [](S& s) { s.FilesCaption[Input] = "*.txt"; }},
           {-9, [](S& s) { s.OutputMode = OutputTarget::SeparateOutput; }}});
}

TEST(ConsistencyCheck, AcceptsEveryFormThatALabelMayHave) {
    OperationSetup setup = SingleFileSetup();
    for (const auto& [caption, code] : {std::pair{LongFolder, 0}, // in full, where there is room
                                        {"/ho...le/2026/", 0},    // shortened to another width
                                        {"...", -1},
                                        {"/ho...", -1},
                                        {"/home...le/2026/", -1},
                                        {"/ho...la/2026/", -1}}) {
        setup.FolderCaption[Input] = caption;
        EXPECT_EQ(CheckConsistency(setup, Texts), code) << caption;
    }
    setup = FolderSetup("abcdefghi.txt");
    for (const char* pattern : {" abcdefghi.txt", ": abcdefghi.txt", " abc...hi.txt"}) {
        setup.FilesCaption[Input] = std::string("All files matching") + pattern;
        EXPECT_EQ(CheckConsistency(setup, Texts), 0) << pattern;
    }
    const auto noTexts = [](std::int16_t) { return std::string(); };
    RewriteCaptions(setup, noTexts);
    EXPECT_EQ(CheckConsistency(setup, noTexts), 0);
    setup.Folder[Output] = "/elsewhere/";
    EXPECT_NE(CheckConsistency(setup, noTexts), 0);
}

} // namespace
} // namespace zr5::test
