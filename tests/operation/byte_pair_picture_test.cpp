#include "operation/measure/byte_pair_picture.h"

#include "operation/measure/picture_file.h"
#include "support/fixtures.h"

#include <cmath>
#include <numeric>

namespace zr5::test {
namespace {

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

} // namespace
} // namespace zr5::test
