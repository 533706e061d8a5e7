// What is measured of files: their randomness, alone or as they were listed, and the picture of
// their pairs of bytes.

#include "operation/measure/byte_pair_picture.h"
#include "operation/measure/randomness_of_files.h"
#include "operation/measure/randomness_report.h"
#include "operation/operation_fixture.h"
#include "operation/report/file_saving.h"

#include <cmath>
#include <filesystem>

namespace zr5::test {
namespace {

using State = RandomnessReport::State;

class Randomness : public DeskTest {
  protected:
    Randomness() {
        clock.step = std::chrono::milliseconds(60);
        folder.Write("in.txt", std::string(123'456, 'x'));
        desk.SetInputFile(folder.Path(), "in.txt");
    }
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

class RandomnessOfFiles : public OperationTest {
  protected:
    RandomnessOfFiles() {
        folder.Write("a.dat", std::string(1234, 'x'));
        folder.Write("b.dat", "x");
        folder.Write("c.dat", std::string(5000, 'x'));
        kit.randomnessOf = {{folder / "a.dat", -3.25},
                            {folder / "b.dat", RandomnessTooSmall},
                            {folder / "c.dat", RandomnessUnreadable},
                            {folder / "sub/gone.dat", RandomnessUnreadable}};
    }
    std::string Report(ReportScreen& on) {
        on.BeginRun(Purpose::Encrypt);
        on.AppendToReport("What was listed.\r\n");
        on.EndRun();
        on.OfferRandomness([&] {
            EXPECT_FALSE(on.OffersRandomness());
            ReportRandomnessOfFiles(listed, machine, on);
        });
        on.RandomnessPressed();
        EXPECT_FALSE(on.OffersRandomness());
        return on.text();
    }
    std::vector<ListedFile> listed{{folder / "a.dat", 1234},
                                   {folder / "b.dat", 1},
                                   {folder / "c.dat", 5000},
                                   {folder / "sub/gone.dat", 77}};
};

TEST_F(RandomnessOfFiles, HasAnEntryForEachListedFileOrSaysWhyNot) {
    disk.Fail(FsCall::Open, 1, FsStatus::NotPermitted);
    const std::string path = folder.Path();
    const std::string none = "Cannot give a randomness report for this file.\r\n";
    EXPECT_EQ(Report(screen),
              "What was listed.\r\n\r\nRandomness report\r\n\r\n" + path +
                  "\r\n\r\nInput file: a.dat\r\nFilesize = 1,234 bytes\r\nRandomness = -3.250"
                  "\r\n\r\nInput file: b.dat\r\n"
                  "b.dat is too small (1 bytes) to have a randomness value.\r\n\r\n"
                  "Input file: c.dat\r\n" +
                  none + "You are not permitted to read it.\r\n\r\n" + path +
                  "sub/\r\n\r\nInput file: gone.dat\r\n" + none +
                  "It is not there any more.\r\n\r\nNumber of files reported: 4 of 4\r\n");
    EXPECT_EQ(screen.PausedDoneText(), "Done");
}

TEST_F(RandomnessOfFiles, EndsWhenStoppedOrWhenTheTextIsFull) {
    user.onEvents = [&] {
        if (kit.measured.size() == 1) screen.StopPressed();
    };
    EXPECT_TRUE(Report(screen).ends_with("Number of files reported: 1 of 4\r\n"));
    EXPECT_EQ(screen.PausedDoneText(), "Stopped");

    user.onEvents = nullptr;
    ReportScreen small(user, clock, 60);
    user.Expect(Notice("The output report buffer has been filled.\r\n"
                       "This randomness report cannot continue and will now terminate.",
                       "Report buffer full", BoxIcon::Exclamation));
    EXPECT_EQ(Report(small), "\r\nThe output report buffer was filled.\r\n"
                             "This randomness report was terminated at this point.\r\n");
    EXPECT_EQ(kit.measured.size(), 2U);
}

TEST(PairCounts, ComparesEachPairWithAnEvenDistribution) {
    PairCounts counts;
    EXPECT_EQ(counts.Brightness(), std::vector<std::uint8_t>(65536)) << "of nothing";
    std::vector<std::byte> everyPairOnce;
    for (int i = 0; i < 65536; ++i) {
        everyPairOnce.push_back(static_cast<std::byte>(i >> 8));
        everyPairOnce.push_back(static_cast<std::byte>(i));
    }
    counts.Add(everyPairOnce);
    EXPECT_EQ(counts.Brightness(), std::vector<std::uint8_t>(65536, 128));
    for (int i = 0; i < 99; ++i)
        counts.Add(std::vector{std::byte{3}, std::byte{200}, std::byte{7}});
    EXPECT_EQ(counts.Of(3, 200), 100U);
    EXPECT_EQ(counts.Of(200, 3), 1U);
    EXPECT_EQ(counts.Total(), 65536U + 99U) << "a byte without partner is no pair";
    const auto brightness = counts.Brightness();
    EXPECT_EQ(brightness[200 * 256 + 3], 232) << "row: second byte, column: first byte";
    EXPECT_EQ(brightness[3 * 256 + 200], 127);
}

TEST(PairCounts, OfRandomBytesScatterAsIndependentDrawsDo) {
    for (const std::uint64_t pairs : {0ULL, 8192ULL, 6'553'600ULL, 1ULL << 33U}) {
        const PairCounts random = PairCounts::OfRandom(pairs);
        EXPECT_EQ(random.Total(), pairs);
        const double even = static_cast<double>(pairs) / 65536;
        std::uint64_t total = 0;
        double squares = 0;
        for (int i = 0; i < 65536; ++i) {
            const std::uint64_t count =
                random.Of(static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i >> 8));
            total += count;
            squares += std::pow(static_cast<double>(count) - even, 2);
        }
        EXPECT_EQ(total, pairs);
        EXPECT_NEAR(squares / 65536, even, 0.05 * even);
    }
}

class Picture : public DiskTest {
  protected:
    BytePairPicture Of(const std::string& content) {
        return {disk, user, clock, folder.Write("file", content)};
    }
};

TEST_F(Picture, TakesThePairsOfFilesOfEveryLength) {
    for (const std::size_t length : {0U, 1U, 2U, 3U, 8191U, 8192U, 8193U, 8194U, 100'001U}) {
        const std::string content = PatternBytes(length);
        BytePairPicture picture = Of(content);
        EXPECT_EQ(picture.Random().Total(), length / 2);
        picture.Press();
        EXPECT_EQ(picture.Counts().Total(), length / 2);
        PairCounts expected;
        expected.Add(std::as_bytes(std::span(content)));
        EXPECT_EQ(picture.Counts().Brightness(), expected.Brightness()) << length;
        EXPECT_EQ(picture.ProgressWidth(300), length == 0 ? 0 : 300);
    }
}

TEST_F(Picture, GoesFromDisplayThroughStopToClose) {
    for (const bool closesWhileDrawing : {false, true}) {
        BytePairPicture picture = Of(PatternBytes(4 * 8192));
        int events = 0;
        EXPECT_EQ(picture.ButtonCaption(), "Display");
        EXPECT_FALSE(picture.CanSave());
        disk.Reset();
        disk.Before(FsCall::Read, 2, [&] { clock.now += std::chrono::milliseconds(50); });
        user.onEvents = [&] {
            ++events;
            EXPECT_EQ(picture.ButtonCaption(), "Stop");
            EXPECT_EQ(picture.ProgressWidth(9), 4) << "half of it, in whole units";
            if (closesWhileDrawing)
                EXPECT_FALSE(picture.MayClose() || picture.ClosesNow());
            else
                picture.Press();
        };
        picture.Press();
        EXPECT_EQ(events, 1) << "by time, not by pairs";
        EXPECT_EQ(picture.Counts().Total(), 2U * 4096) << "what was drawn stays";
        EXPECT_EQ(picture.Random().Total(), 2U * 4096);
        EXPECT_EQ(picture.ButtonCaption(), "Close");
        EXPECT_TRUE(picture.CanSave());
        EXPECT_EQ(picture.ClosesNow(), closesWhileDrawing);
        picture.Press();
        EXPECT_TRUE(picture.ClosesNow());
    }
}

TEST_F(Picture, SaysWhenTheFileCannotBeRead) {
    for (const bool isGone : {false, true}) {
        BytePairPicture picture = Of(PatternBytes(4 * 8192));
        disk.Fail(FsCall::Read, 2);
        if (isGone) folder.Remove("file");
        user.Expect(Notice("Error reading file!", "Randomness report"));
        picture.Press();
        EXPECT_EQ(picture.ButtonCaption(), "Close");
        EXPECT_EQ(picture.Counts().Total(), isGone ? 0U : 4096U);
    }
}

TEST_F(Picture, IsSavedWithAnExtensionNeverOverItsFileAndOverAnotherOnlyWhenToldTo) {
    const auto save = [this](const std::optional<std::string>& name,
                             const std::optional<MessageBox>& box = {},
                             Answer answer = Answer::Ok) {
        user.ExpectFile("Save picture", name ? std::optional(folder / *name) : std::nullopt);
        if (box) user.Expect(*box, answer);
        SavePicture(disk, random, user, folder / "pictured.png",
                    std::as_bytes(std::span("PNG", 3)));
    };
    const auto refuses = [&](const std::string& name, const std::string& reason) {
        save(name, Notice(folder / name + "\r\n" + reason, "Save picture", BoxIcon::Exclamation));
    };
    save("a");
    EXPECT_EQ(folder.Read("a.png"), "PNG");
    save("b.PNG");
    EXPECT_EQ(folder.Read("b.PNG"), "PNG");
    folder.Write("c.png", "old");
    for (const Answer answer : {Answer::No, Answer::Yes}) {
        save("c", OverwriteQuestion(folder / "c.png"), answer);
        EXPECT_EQ(folder.Read("c.png"), answer == Answer::Yes ? "PNG" : "old");
    }
    save(std::nullopt);
    folder.Write("pictured.png", "the file");
    refuses("pictured.png", "is the file that the picture is of.");
    EXPECT_EQ(folder.Read("pictured.png"), "the file");
    refuses("none/a.png", "cannot be written: no file can be made in its folder.");
    const auto names = folder.Names();
    disk.Fail(FsCall::Write, 1, FsStatus::NoSpace);
    refuses("full.png", "was not written: the disk is full.");
    disk.Fail(FsCall::Flush, 1);
    refuses("flush.png", "was not written.");
    EXPECT_EQ(folder.Names(), names) << "nothing is left of it";
}

TEST_F(Picture, IsNotTheOnlyThingSavedSoIsAReportWithAWarningWhereItHoldsAKey) {
    ReportScreen screen(user, clock);
    screen.BeginRun(Purpose::Encrypt);
    screen.AppendToReport("one\r\nGr\u00fc\u00dfe");
    user.ExpectFile("Save report", folder / "report");
    EXPECT_TRUE(SaveReport(disk, random, user, screen));
    EXPECT_EQ(folder.Read("report.txt"), "one\nGr\u00fc\u00dfe");
    EXPECT_EQ(std::filesystem::status(folder / "report.txt").permissions(),
              std::filesystem::perms(0600));
    screen.WillHoldKey();
    user.Expect("Save report",
                "This report holds a key: whoever can read the saved file can read the key."
                "\r\n\r\nDo you wish to save it all the same?",
                Answer::No);
    EXPECT_FALSE(SaveReport(disk, random, user, screen));
    EXPECT_EQ(folder.Names().size(), 1U);
}

} // namespace
} // namespace zr5::test
