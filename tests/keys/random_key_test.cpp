#include "keys/random_key.h"

#include "keys/classification.h"
#include "libs/filekit/randomness.h"
#include "support/fakes.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <random>

namespace zr5 {
namespace {

using std::chrono::milliseconds;

/// The same bytes in every run.
class RepeatableRandom final : public RandomSource {
  public:
    void Fill(std::span<std::byte> into) override {
        std::ranges::generate(into, [this] { return static_cast<std::byte>(engine_() & 0xFFU); });
    }

  private:
    std::mt19937 engine_{2026};
};

TEST(RandomKey, FollowsTheFormulaOfClockAndPointer) {
    EXPECT_EQ(KeyCharacter(99, 6195, 3105), 33 + std::uint64_t{3303} * 6294 * 100 % 223);
    EXPECT_EQ(Hundredths(std::chrono::milliseconds(86'399'994)), 99U);
    EXPECT_EQ(Hundredths(std::chrono::milliseconds(86'399'995)), 100U);
}

TEST(RandomKey, ComesFromMovementOnlyAndShowsItsProgress) {
    test::StoppedClock clock;
    RepeatableRandom random;
    RandomKeyCollector collector(clock, random);
    const std::string line(63, '_');
    const std::string block = "\u2588";
    collector.PointerAt(300, 200); // where the pointer rests when the window opens
    for (int tick = 1; tick <= 20; ++tick) {
        clock.timeOfDay += RandomKeyCollector::TickInterval;
        collector.PointerAt(300, 200);
        collector.Tick();
        EXPECT_EQ(collector.IsWaiting(), tick >= 12) << tick;
    }
    EXPECT_EQ(collector.Progress(), line);
    for (int i = 0; i < 70; ++i) {
        collector.PointerAt(-5, i);
        collector.Tick();
        EXPECT_FALSE(collector.IsWaiting());
        EXPECT_EQ(collector.IsComplete(), i >= 63) << i;
        EXPECT_TRUE(i != 0 || collector.Progress() == block + line.substr(1));
    }
    EXPECT_EQ(collector.Take().size(), 64U);
    EXPECT_TRUE(collector.Take().empty());
}

TEST(RandomKey, IsUniformInEveryPlaceAndNeverTakenForText) {
    constexpr int Keys = 10'000;
    // 222 degrees of freedom: mean 222, deviation 21; exceeded by chance once in a million.
    constexpr double MostChiSquare = 337.0;
    test::StoppedClock clock;
    RepeatableRandom random;
    const auto collected = [&] {
        RandomKeyCollector collector(clock, random);
        for (std::int64_t x = 0; !collector.IsComplete(); ++x) { // a dull pointer
            clock.timeOfDay += RandomKeyCollector::TickInterval;
            collector.PointerAt(x % 2 * 15, 0);
            collector.Tick();
        }
        return collector.Take();
    };
    for (const bool byMovement : {true, false}) {
        std::array<std::array<int, KeyCharacterCount>, KeyfileBytes> counts{};
        for (int i = 0; i < Keys; ++i) {
            const SecretBytes key = byMovement ? collected() : MakeRandomKey(random);
            ASSERT_EQ(key.size(), KeyfileBytes);
            ASSERT_FALSE(byMovement && KeyIsText(key.text()));
            ASSERT_GE(BufferRandomness(key.bytes()), 0.88);
            for (std::size_t place = 0; place < KeyfileBytes; ++place) {
                const auto code = std::to_integer<std::size_t>(key.bytes()[place]);
                ASSERT_GE(code, FirstKeyCharacter);
                ++counts[place][code - FirstKeyCharacter];
            }
        }
        for (const auto& place : counts) {
            constexpr double Expected = double{Keys} / KeyCharacterCount;
            double chiSquare = 0;
            for (const int count : place)
                chiSquare += (count - Expected) * (count - Expected) / Expected;
            EXPECT_LT(chiSquare, MostChiSquare);
        }
    }
}

} // namespace
} // namespace zr5
