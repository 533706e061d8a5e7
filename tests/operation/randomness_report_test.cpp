#include "operation/measure/randomness_report.h"

#include "operation/measure/randomness_of_pattern.h"
#include "operation/operation_fixture.h"

#include <algorithm>
#include <filesystem>

namespace zr5::test {
namespace {

using State = RandomnessReport::State;

class Randomness : public OperationTest {
  protected:
    Randomness() {
        clock.step = std::chrono::milliseconds(60);
        desk.ResetSetup();
        folder.Write("in.txt", std::string(123'456, 'x'));
        desk.SetInputFile(folder.Path(), "in.txt");
    }
    SetupDesk desk{user, disk, [](ProgramText) { return std::string(); }};
    RandomnessReport report{desk, machine};
};

TEST_F(Randomness, OfTheOnlyFileIsShownAtOnceForTheWholeOfIt) {
    kit.fileRandomness = 0.98765;
    report.Open();
    EXPECT_EQ(report.state(), State::Shown);
    EXPECT_EQ(desk.ShownPane(), Pane::Randomness);
    EXPECT_FALSE(report.OffersChoice());
    EXPECT_EQ(FileLine(report.Shown()), "Input file: in.txt");
    EXPECT_EQ(SizeLine(report.Shown()), "Filesize = 123,456 bytes");
    EXPECT_EQ(RandomnessLine(report.Shown()), "Randomness = 0.988");
    EXPECT_EQ(Meaning(report.Shown()), "Above 0: it looks encrypted or compressed.");
    EXPECT_EQ(kit.measured, (std::vector{std::pair(folder / "in.txt", std::uint64_t{0})}));
    report.Close();
    EXPECT_EQ(desk.ShownPane(), Pane::Menu);
    kit.fileRandomness = -10.999;
    report.Open();
    EXPECT_EQ(RandomnessLine(report.Shown()), "Randomness = -10.999");
    EXPECT_EQ(Meaning(report.Shown()), "Not above 0: it looks neither encrypted nor compressed.");
}

TEST_F(Randomness, SaysWhyThereIsNoneAndGoesBackToTheMenuFirst) {
    const MessageBox failed =
        Notice("Cannot give a randomness report for this file.", "Error", BoxIcon::Exclamation);
    const MessageBox tooSmall = Notice(
        "in.txt is too small (123456 bytes) to have a randomness value.", "Randomness report");
    const MessageBox isGone = Notice("File " + folder / "in.txt" + " not found.",
                                     "Randomness report", BoxIcon::Exclamation);
    for (const auto& [value, box] : {std::pair{RandomnessTooSmall, tooSmall},
                                     {RandomnessUnreadable, failed},
                                     {-20.0, failed},
                                     {0.5, isGone}}) {
        if (value > 0) folder.Remove("in.txt");
        kit.fileRandomness = value;
        user.Expect(box);
        report.Open();
        EXPECT_EQ(report.state(), State::Closed) << value;
        EXPECT_EQ(desk.ShownPane(), Pane::Menu) << value;
    }
    EXPECT_EQ(kit.measured.size(), 3U) << "a missing file is not measured";
}

TEST_F(Randomness, ShowsHowFarItIsAndIsEndedByNotNow) {
    desk.SelectOutputMode(OutputTarget::SeparateOutput);
    desk.SetOutputFile(folder.Path(), "out\x1b.zr5");
    report.Open();
    EXPECT_TRUE(kit.measured.empty());
    user.Expect("Randomness report", "File " + folder.Path() + "out\\x1B.zr5 not found.");
    report.Check(OutputSide);
    EXPECT_EQ(report.state(), State::Choosing);
    folder.Write("out\x1b.zr5", "x");
    std::vector<double> fractions;
    user.onEvents = [&] {
        EXPECT_EQ(report.state(), State::Checking);
        fractions.push_back(report.Fraction());
        report.Check(InputSide); // a second one does not begin
    };
    report.Check(OutputSide);
    EXPECT_EQ(FileLine(report.Shown()), "Output file: out\\x1B.zr5");
    EXPECT_EQ(fractions, (std::vector{0.0, 0.5}));
    user.onEvents = [&] { report.Close(); };
    report.Check(InputSide);
    EXPECT_EQ(report.state(), State::Closed);
}

class RandomnessOfPattern : public OperationTest {
  protected:
    RandomnessOfPattern() {
        setup.InputMode = InputSource::FilesInAFolder;
        setup.Folder = {folder.Path(), folder.Path()};
        setup.FilePattern = "*.dat";
        folder.Write("a.dat", std::string(1234, 'x'));
        folder.Write("b.dat", "x");
        folder.Write("c.dat", std::string(5000, 'x'));
        folder.Write("d.txt", "x");
        std::filesystem::create_directory(folder / "sub");
        folder.Write("sub/e.dat", "x");
        kit.randomnessOf = {{folder / "a.dat", -3.25},
                            {folder / "b.dat", RandomnessTooSmall},
                            {folder / "c.dat", RandomnessUnreadable}};
    }
    std::string Report(ReportScreen& on) {
        bool shown = false;
        ReportRandomnessOfPattern(setup, machine, on, [&] { shown = true; });
        return shown ? on.text() : "";
    }
};

TEST_F(RandomnessOfPattern, IsMeantByWildcardsInAFolderOnly) {
    EXPECT_TRUE(IsReportOfPattern(setup));
    setup.FilePattern = "a.dat";
    EXPECT_FALSE(IsReportOfPattern(setup));
    setup.FilePattern = "";
    EXPECT_TRUE(IsReportOfPattern(setup));
    setup.InputMode = InputSource::SingleFile;
    EXPECT_FALSE(IsReportOfPattern(setup));
}

TEST_F(RandomnessOfPattern, HasAnEntryForEachMatchingFileOfTheFolder) {
    const std::string text = Report(screen);
    for (const char* entry :
         {"Input file: a.dat\r\nFilesize = 1,234 bytes\r\nRandomness = -3.250\r\n\r\n",
          "Input file: b.dat\r\nb.dat is too small (1 bytes) to have a randomness value.\r\n\r\n",
          "Input file: c.dat\r\nCannot give a randomness report for this file.\r\n\r\n"})
        EXPECT_NE(text.find(entry), std::string::npos) << entry;
    EXPECT_EQ(kit.measured.size(), 3U);
    EXPECT_EQ(screen.PausedDoneText(), "Done");
    setup.FilePattern = "*.zip";
    user.Expect(
        Notice("There are no files in " + folder.Path() + " matching *.zip.", "Randomness report"));
    EXPECT_EQ(Report(screen), "");
}

TEST_F(RandomnessOfPattern, EndsWhenStoppedOrWhenTheTextIsFull) {
    user.onEvents = [&] { screen.StopPressed(); }; // heard once the run has begun
    static_cast<void>(Report(screen));
    EXPECT_EQ(kit.measured.size(), 1U);
    EXPECT_EQ(screen.PausedDoneText(), "Stopped");

    user.onEvents = nullptr;
    ReportScreen small(user, clock, 20);
    user.Expect(Notice("The output report buffer has been filled.\r\n"
                       "This randomness report cannot continue and will now terminate.",
                       "Report buffer full", BoxIcon::Exclamation));
    EXPECT_EQ(Report(small), "\r\nThe output report buffer was filled.\r\n"
                             "This randomness report was terminated at this point.\r\n");
    EXPECT_EQ(kit.measured.size(), 2U);
}

} // namespace
} // namespace zr5::test
