#include "libs/randomness.h"

#include "libs/file_kit.h"
#include "libs/random.h"
#include "libs/zr5_file_kit.h"
#include "support/faulty_file_system.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace zr5::test {
namespace {

constexpr std::int32_t Sample = 4096;

std::string RandomBytes(std::size_t length) {
    std::string bytes(length, '\0');
    SystemRandom().Fill(std::as_writable_bytes(std::span(bytes)));
    return bytes;
}

/// Text of `length` bytes as people write it.
std::string Text(std::size_t length) {
    constexpr std::string_view Words =
        "It was the best of times, it was the worst of times, it was the age of wisdom, it was "
        "the age of foolishness, it was the epoch of belief, it was the epoch of incredulity. ";
    std::string text;
    while (text.size() < length) {
        text += Words;
    }
    return text.substr(0, length);
}

/// Values of `width` bytes, least first, each `step` more than the one before.
std::string Counter(std::size_t length, std::size_t width, std::uint64_t step) {
    std::string bytes;
    for (std::uint64_t value = 0; bytes.size() < length; value += step) {
        for (std::size_t i = 0; i < width; ++i) {
            bytes += static_cast<char>(value >> (8 * i));
        }
    }
    return bytes.substr(0, length);
}

class FileRandomness : public testing::Test {
  protected:
    std::unique_ptr<FileSystem> system = MakeSystemFileSystem();
    FaultyFileSystem disk{*system};
    SystemRandom random;
    std::unique_ptr<FileKit> kit = MakeFileKit(disk, random);
    TemporaryFolder folder;

    double Of(const std::string& content, std::int32_t sample = Sample) {
        return kit->fr(folder.Write("file", content), sample);
    }
};

TEST_F(FileRandomness, IsAboveZeroForRandomContentAndBelowForAnyOther) {
    for (int i = 0; i < 50; ++i) {
        for (const std::size_t length : {1024U, 2000U, 4096U, 100'000U}) {
            const double value = Of(RandomBytes(length));
            EXPECT_GT(value, 0.0) << length;
            EXPECT_LE(value, 1.0) << length;
        }
    }
    EXPECT_GT(Of(RandomBytes(3'000'000), 0), 0.99);
    for (const std::size_t length : {1024U, 4096U, 100'000U}) {
        SCOPED_TRACE(length);
        EXPECT_LT(Of(Text(length)), 0.0);
        EXPECT_LT(Of(std::string(length, '\0')), 0.0);
        EXPECT_GT(Of(std::string(length, '\0')), RandomnessFailureLimit) << "no failure";
        EXPECT_LT(Of(std::string(length, 'x')), 0.0);
        // Every byte value equally often, but in an order.
        EXPECT_LT(Of(Counter(length, 1, 1)), 0.0);
        EXPECT_LT(Of(Counter(length, 1, 77)), 0.0);
        EXPECT_LT(Of(Counter(length, 2, 257)), 0.0);
        EXPECT_LT(Of(Counter(length, 4, 0x01030507)), 0.0);
        EXPECT_LT(Of(Counter(length, 8, 0x0103050709)), 0.0);
    }
}

TEST_F(FileRandomness, NeedsAThousandAndTwentyFourBytesAndMeasuresNoMoreThanTheSample) {
    EXPECT_EQ(Of(""), RandomnessTooSmall);
    EXPECT_EQ(Of(RandomBytes(1023)), RandomnessTooSmall);
    EXPECT_GT(Of(RandomBytes(1024)), 0.0);
    const std::string mixed = RandomBytes(Sample) + std::string(100'000, '\0');
    EXPECT_GT(Of(mixed), 0.0);
    EXPECT_LT(Of(mixed, 0), 0.0);
}

TEST_F(FileRandomness, DoesNotDependOnHowTheBytesCome) {
    const std::string bytes = Text(10'000) + RandomBytes(10'000);
    const auto all = std::as_bytes(std::span(bytes));
    RandomnessMeter whole;
    whole.Add(all);
    for (const std::size_t step : {1U, 3U, 8U, 9U, 4096U}) {
        RandomnessMeter pieces;
        for (std::size_t at = 0; at < all.size(); at += step) {
            pieces.Add(all.subspan(at, std::min(step, all.size() - at)));
        }
        EXPECT_DOUBLE_EQ(pieces.Value(), whole.Value()) << step;
    }
}

TEST_F(FileRandomness, SaysWhenAFileCannotBeRead) {
    EXPECT_EQ(kit->fr(folder / "none", Sample), RandomnessUnreadable);
    EXPECT_EQ(kit->fr(folder.Path(), Sample), RandomnessUnreadable);
    disk.Fail(FsCall::Read, 1);
    EXPECT_EQ(Of(RandomBytes(5000)), RandomnessUnreadable);
    EXPECT_LE(RandomnessUnreadable, RandomnessFailureLimit);
}

TEST_F(FileRandomness, OfABufferTellsRandomKeysFromText) {
    const auto measure = [&](const std::string& bytes) {
        return kit->randomness_measure(bytes, static_cast<std::int32_t>(bytes.size()), 0);
    };
    double sum = 0.0;
    for (int i = 0; i < 2000; ++i) {
        const double value = measure(RandomBytes(64));
        EXPECT_GE(value, 0.88);
        EXPECT_LE(value, 1.0);
        sum += value;
    }
    EXPECT_NEAR(sum / 2000, 0.96, 0.01);
    EXPECT_LT(measure(Text(64)), 0.75);
    EXPECT_DOUBLE_EQ(measure(std::string(64, 'x')), 0.0);
    EXPECT_DOUBLE_EQ(measure(Counter(64, 1, 1)), 1.0);
    EXPECT_DOUBLE_EQ(measure(Counter(512, 1, 1)), 1.0);
    EXPECT_DOUBLE_EQ(measure(""), 0.0);
    EXPECT_DOUBLE_EQ(measure("x"), 0.0);
    EXPECT_DOUBLE_EQ(kit->randomness_measure("abcdxxxx", 4, 0), 1.0)
        << "only the first bytes count";
}

} // namespace
} // namespace zr5::test
