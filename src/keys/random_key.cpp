#include "keys/random_key.h"

#include "keys/classification.h"

#include <algorithm>
#include <array>

namespace zr5 {
namespace {

constexpr std::uint64_t LargestCoordinate = (std::uint64_t{1} << 24U) - 1;
constexpr int PatientTicks = 12; // three seconds
/// One random key in six has no character outside text; not a hundred in a row.
constexpr int MostStirrings = 100;

std::uint64_t Coordinate(std::int64_t value) {
    return std::min(static_cast<std::uint64_t>(std::max<std::int64_t>(value, 0)),
                    LargestCoordinate);
}

/// Below KeyCharacterCount, each number as likely as any other.
std::uint8_t UniformNumber(RandomSource& random) {
    std::array<std::byte, 1> drawn{};
    do {
        random.Fill(drawn);
    } while (std::to_integer<std::uint32_t>(drawn[0]) >= KeyCharacterCount);
    const auto number = std::to_integer<std::uint8_t>(drawn[0]);
    Wipe(drawn);
    return number;
}

} // namespace

SecretBytes MakeRandomKey(RandomSource& random) {
    SecretBytes key(KeyfileBytes);
    for (std::byte& byte : key.bytes())
        byte = static_cast<std::byte>(UniformNumber(random) + FirstKeyCharacter);
    return key;
}

std::uint64_t Hundredths(std::chrono::milliseconds timeOfDay) noexcept {
    return static_cast<std::uint64_t>(timeOfDay.count() % 1000 + 5) / 10;
}

RandomKeyCollector::RandomKeyCollector(const Clock& clock, RandomSource& random)
    : clock_(clock), random_(random), key_(KeyfileBytes) {}

void RandomKeyCollector::PointerAt(std::int64_t x, std::int64_t y) {
    pointer_ = {Coordinate(x), Coordinate(y)};
    if (!pointerSeen_) last_ = pointer_;
    pointerSeen_ = true;
}

/// The character moved on by a uniform number below KeyCharacterCount.
std::uint8_t RandomKeyCollector::Stirred(std::uint8_t character) {
    const std::uint32_t moved =
        std::uint32_t{character} - FirstKeyCharacter + UniformNumber(random_);
    return static_cast<std::uint8_t>(moved % KeyCharacterCount + FirstKeyCharacter);
}

void RandomKeyCollector::Tick() {
    if (IsComplete()) return;
    ++idleTicks_;
    if (pointer_ == last_) return;
    idleTicks_ = 0;
    last_ = pointer_;
    const std::uint64_t hundredths = Hundredths(clock_.TimeOfDay());
    key_.bytes()[count_++] = std::byte{Stirred(KeyCharacter(hundredths, pointer_.x, pointer_.y))};
    for (int i = 0; i < MostStirrings && IsComplete() && KeyIsText(key_.text()); ++i) {
        for (std::byte& byte : key_.bytes())
            byte = std::byte{Stirred(std::to_integer<std::uint8_t>(byte))};
    }
}

bool RandomKeyCollector::IsComplete() const {
    return count_ == KeyfileBytes;
}

std::string RandomKeyCollector::Progress() const {
    constexpr std::string_view Block = "\u2588";
    std::string progress;
    for (std::size_t i = 0; i < count_; ++i)
        progress += Block;
    return progress + std::string(KeyfileBytes - 1 - std::min(count_, KeyfileBytes - 1), '_');
}

bool RandomKeyCollector::IsWaiting() const {
    return idleTicks_ >= PatientTicks;
}

SecretBytes RandomKeyCollector::Take() {
    SecretBytes collected = SecretBytes::CopyOf(key_.text().substr(0, count_));
    key_.Clear();
    key_ = SecretBytes(KeyfileBytes);
    count_ = 0;
    return collected;
}

} // namespace zr5
