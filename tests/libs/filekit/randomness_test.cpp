#include "libs/filekit/randomness.h"

#include "support/fixtures.h"

#include <cmath>
#include <numbers>

namespace zr5::test {
namespace {

constexpr std::uint64_t Sample = 4096;

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
    while (text.size() < length)
        text += Words;
    return text.substr(0, length);
}

/// Values of `width` bytes, least first, each `step` more than the one before.
std::string Counter(std::size_t length, std::size_t width, std::uint64_t step) {
    std::string bytes;
    for (std::uint64_t value = 0; bytes.size() < length; value += step)
        for (std::size_t i = 0; i < width; ++i)
            bytes += static_cast<char>(value >> (8 * i));
    return bytes.substr(0, length);
}

class FileRandomness : public KitTest {
  protected:
    double Of(const std::string& content, std::uint64_t sample = Sample) {
        return kit->fr(folder.Write("file", content), sample, {});
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
        for (const std::string& content :
             {Text(length), std::string(length, '\0'), // and every byte value equally often:
              Counter(length, 1, 1), Counter(length, 1, 77), Counter(length, 2, 257),
              Counter(length, 4, 0x01030507), Counter(length, 8, 0x0103050709)})
            EXPECT_LT(Of(content), 0.0);
    }
}

TEST_F(FileRandomness, NeedsAThousandAndTwentyFourBytesAndMeasuresNoMoreThanTheSample) {
    EXPECT_EQ(kit->fr(folder.Path(), Sample, {}), RandomnessUnreadable);
    disk.Fail(FsCall::Read, 1);
    EXPECT_EQ(Of(RandomBytes(5000)), RandomnessUnreadable);
    EXPECT_EQ(Of(""), RandomnessTooSmall);
    EXPECT_EQ(Of(RandomBytes(1023)), RandomnessTooSmall);
    EXPECT_GT(Of(RandomBytes(1024)), 0.0);
    // A header and a trailer are not what a file is about.
    const std::string mixed =
        std::string(50'000, '\0') + RandomBytes(Sample) + std::string(50'000, '\0');
    EXPECT_GT(Of(mixed), 0.0);
    EXPECT_LT(Of(mixed, 0), 0.0);
}

/// Samples of a sine, each of `width` bytes, least first.
std::string Tone(std::size_t length, double hertz, std::size_t width) {
    std::string bytes;
    for (int i = 0; bytes.size() < length; ++i) {
        const double value = std::sin(2 * std::numbers::pi * hertz * i / 44'100);
        const auto sample =
            std::llround(std::ldexp(value, static_cast<int>(8 * width - 1)) * 0.999);
        for (std::size_t k = 0; k < width; ++k)
            bytes += static_cast<char>(static_cast<std::uint64_t>(sample) >> (8 * k));
    }
    return bytes.substr(0, length);
}

TEST_F(FileRandomness, IsNotDeceivedByTheNoiseInTheLowBytesOfNumbers) {
    for (const std::size_t width : {1U, 2U, 3U, 4U}) {
        for (const double hertz : {50.0, 1000.0, 3000.0}) {
            for (const std::uint64_t sample : {Sample, std::uint64_t{0}}) {
                EXPECT_LT(Of(Tone(40'000, hertz, width), sample), 0.0)
                    << width << " bytes a sample, " << hertz << " Hz, first " << sample;
            }
        }
    }
}

TEST_F(FileRandomness, TellsHowFarItIsWithAWholeFileAndEndsWhenAsked) {
    const std::string path = folder.Write("file", RandomBytes(3'000'000));
    std::vector<std::uint64_t> done;
    const auto progress = [&](std::uint64_t doneBytes, std::uint64_t totalBytes) {
        EXPECT_EQ(totalBytes, 3'000'000U);
        done.push_back(doneBytes);
        return done.size() != 5;
    };
    EXPECT_GT(kit->fr(path, 0, progress), 0.0);
    EXPECT_EQ(done, (std::vector<std::uint64_t>{1'048'576, 2'097'152, 3'000'000}));
    EXPECT_EQ(kit->fr(path, 0, progress), RandomnessStopped);
    EXPECT_EQ(done.size(), 5U);
}

TEST_F(FileRandomness, DoesNotDependOnHowTheBytesCome) {
    const std::string bytes = Text(10'000) + RandomBytes(10'000);
    const auto all = std::as_bytes(std::span(bytes));
    RandomnessMeter whole;
    whole.Add(all);
    for (const std::size_t step : {1U, 3U, 8U, 9U, 4096U}) {
        RandomnessMeter pieces;
        for (std::size_t at = 0; at < all.size(); at += step)
            pieces.Add(all.subspan(at, std::min(step, all.size() - at)));
        EXPECT_DOUBLE_EQ(pieces.Value(), whole.Value()) << step;
    }
}

TEST_F(FileRandomness, OfABufferTellsRandomKeysFromText) {
    const auto measure = [&](const std::string& bytes) {
        return kit->randomness_measure(std::as_bytes(std::span(bytes)));
    };
    constexpr int Buffers = 100'000;
    double sum = 0.0;
    for (int i = 0; i < Buffers; ++i) {
        const double value = measure(RandomBytes(64));
        ASSERT_GE(value, 0.88);
        sum += value;
    }
    EXPECT_NEAR(sum / Buffers, 0.96, 0.01);
    EXPECT_LT(measure(Text(64)), 0.75);
    EXPECT_DOUBLE_EQ(measure(std::string(64, 'x')), 0.0);
    EXPECT_DOUBLE_EQ(measure(Counter(64, 1, 1)), 1.0);
    EXPECT_DOUBLE_EQ(measure(""), 0.0);
}

} // namespace
} // namespace zr5::test
