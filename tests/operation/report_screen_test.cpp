#include "operation/report/report_screen.h"

#include "operation/operation_fixture.h"

namespace zr5::test {
namespace {

class ReportScreenTest : public DiskTest {
  protected:
    ReportScreen screen{user, clock, 1000};

    void ExpectButtons(const std::string& stop, bool stopEnabled, const std::string& pause,
                       const std::string& label) {
        EXPECT_EQ(screen.StopCaption(), stop);
        EXPECT_EQ(screen.StopEnabled(), stopEnabled);
        EXPECT_EQ(screen.PauseCaption(), pause);
        EXPECT_EQ(screen.PauseEnabled(), stopEnabled);
        EXPECT_EQ(screen.PausedDoneText(), label);
    }
};

TEST_F(ReportScreenTest, FollowsARunFromIdleToDone) {
    screen.PauseContinuePressed(); // nothing runs: it does nothing
    ExpectButtons("Stop at next file", false, "Pause at next file", "");
    EXPECT_EQ(screen.Time().Text(), "");
    screen.BeginRun(Direction::Encrypt);
    ExpectButtons("Stop at next file", true, "Pause at next file", "");
    clock.now += std::chrono::seconds(61);
    EXPECT_EQ(screen.Time().Text(), "Started 14:03, elapsed 1 minute and 1 second");
    screen.EndRun();
    clock.now += std::chrono::hours(5);
    EXPECT_EQ(screen.Time().ElapsedSeconds(), 61);
    screen.StopPressed();
    ExpectButtons("Stop at next file", false, "Pause at next file", "Done");
    screen.BeginRun(Direction::Encrypt);
    screen.StopPressed();
    ExpectButtons("Stop", false, "Pause at next file", "Stopped");
    EXPECT_TRUE(screen.IsRunning());
    screen.EndRun();
    EXPECT_EQ(screen.PausedDoneText(), "Stopped");
    screen.BeginRun(Direction::Encrypt);
    EXPECT_FALSE(screen.StopRequested());
}

TEST_F(ReportScreenTest, WaitsWhilePausedUntilContinueOrStop) {
    screen.BeginRun(Direction::Encrypt);
    screen.PauseStep(); // not paused: returns
    int waits = 0;
    user.onEvents = [&] {
        ExpectButtons("Stop", true, "Continue", "Paused");
        if (++waits == 2) screen.PauseContinuePressed();
    };
    screen.PauseContinuePressed();
    ExpectButtons("Stop at next file", true, "Continue", "");
    screen.PauseStep();
    EXPECT_EQ(waits, 2);
    ExpectButtons("Stop at next file", true, "Pause at next file", "");
    user.onEvents = [&] { screen.StopPressed(); };
    screen.PauseContinuePressed();
    screen.PauseStep();
    EXPECT_TRUE(screen.StopRequested());
}

TEST_F(ReportScreenTest, ShowsHowFarItIsWithTheCurrentFileAndWithoutPauses) {
    constexpr std::uint64_t Megabyte = 1048576;
    screen.BeginRun(Direction::Encrypt);
    screen.BeginFiles(2, 4 * Megabyte);
    EXPECT_EQ(screen.ProgressText(), "0 of 2 files, 0.00 of 4.00 MB");
    screen.BeginFile("a", 2 * Megabyte, 2);
    clock.now += std::chrono::seconds(10);
    screen.PassProgress()(Megabyte, 2 * Megabyte);
    EXPECT_EQ(screen.Progress().file.Fraction(), 0.25);
    screen.NextPass();
    EXPECT_EQ(screen.Progress().file.Fraction(), 0.5);
    screen.EndFile(2 * Megabyte);
    user.onEvents = [&] {
        clock.now += std::chrono::hours(1);
        screen.PauseContinuePressed();
    };
    screen.PauseContinuePressed();
    screen.PauseStep();
    EXPECT_EQ(screen.ProgressText(), "1 of 2 files, 2.00 of 4.00 MB, 10 seconds left");
    EXPECT_EQ(screen.Progress().Fraction(), 0.5);
}

TEST_F(ReportScreenTest, CopiesTheSelectionOrElseEverything) {
    screen.AppendToReport("one\r\ntwo");
    for (const auto& [selected, copied] : {std::pair{"two", "two"}, {"", "one\r\ntwo"}}) {
        screen.CopyPressed(selected);
        EXPECT_EQ(user.clipboard, copied);
    }
}

TEST_F(ReportScreenTest, GoesOnWithoutEntriesWhenTheTextIsFullOrStopsIfTheUserSaysSo) {
    screen.BeginRun(Direction::Encrypt);
    screen.AppendToReport(std::string(999, 'x'));
    EXPECT_FALSE(screen.IsFull());
    screen.AppendToReport("\u00e9");
    ASSERT_TRUE(screen.IsFull()) << "a character counts once, however many bytes it has";
    user.Expect(ReportFullQuestion(), Answer::Yes);
    screen.ReportBufferFull();
    EXPECT_EQ(screen.text(), std::string(500, 'x') +
                                 "\r\nThe output report buffer was filled.\r\n"
                                 "Subsequent operations on individual files will continue,\r\n"
                                 "but results will not be reported here.\r\n");
    const std::string before = screen.text();
    screen.AppendToReport("an entry");
    EXPECT_EQ(screen.text(), before);
    screen.AppendAlways("summary");
    EXPECT_EQ(screen.text(), before + "summary");
    EXPECT_FALSE(screen.StopRequested());

    screen.BeginRun(Direction::Decrypt);
    screen.AppendToReport("short");
    user.Expect(ReportFullQuestion(), Answer::No);
    screen.ReportBufferFull();
    EXPECT_EQ(screen.text(), "\r\nThe output report buffer was filled.\r\n"
                             "This operation was terminated at the user's request.\r\n"
                             "Note: Some files were not decrypted.\r\n");
    EXPECT_TRUE(screen.StopRequested());
}

} // namespace
} // namespace zr5::test
