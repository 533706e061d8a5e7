#pragma once

// The rules of the window in which a new random key comes about: from the movements of the
// pointer, from the clock, and from the operating system's generator.

#include "libs/system/clock.h"
#include "libs/system/random.h"
#include "libs/system/secret.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace zr5 {

/// Characters of random keys have the codes 33 to 255: this many.
inline constexpr std::uint32_t KeyCharacterCount = 223;
inline constexpr std::uint8_t FirstKeyCharacter = 33;

/// The character that clock and pointer give: (2h + y)(h + x)(h + 1) modulo 223, plus 33.
/// `hundredths` (h) is below 101, `x` and `y` below 2^24.
[[nodiscard]] constexpr std::uint8_t KeyCharacter(std::uint64_t hundredths, std::uint64_t x,
                                                  std::uint64_t y) noexcept {
    const std::uint64_t value = (2 * hundredths + y) * (hundredths + x) * (hundredths + 1);
    return static_cast<std::uint8_t>(value % KeyCharacterCount + FirstKeyCharacter);
}

/// The hundredths of a second of a time of day, rounded: 0 to 100.
[[nodiscard]] std::uint64_t Hundredths(std::chrono::milliseconds timeOfDay) noexcept;

/// A key of KeyfileBytes such characters from the generator alone, each as likely as any other.
[[nodiscard]] SecretBytes MakeRandomKey(RandomSource& random);

class RandomKeyCollector {
  public:
    /// How often `Tick` is to be called.
    static constexpr std::chrono::milliseconds TickInterval{250};
    /// Places of the pointer are told in units of this many to the pixel.
    static constexpr int UnitsPerPixel = 15;

    RandomKeyCollector(const Clock& clock, RandomSource& random);

    /// The pointer is at this place of the window, in position units. The first place that is
    /// told is where it rested.
    void PointerAt(std::int64_t x, std::int64_t y);
    /// One character more if the pointer has moved since the last one. Each is the one that
    /// clock and pointer give plus, modulo 223, a number from the operating system's generator:
    /// so it is never easier to guess than that number. A complete key that happens to be text
    /// would be taken for one that somebody wrote; it is stirred again.
    void Tick();

    [[nodiscard]] bool IsComplete() const;
    /// 63 underscores in which blocks take the places of characters collected; in the end 64
    /// blocks.
    [[nodiscard]] std::string Progress() const;
    /// Nothing has moved for some seconds: the user needs to be told what to do.
    [[nodiscard]] bool IsWaiting() const;

    /// Hands over the characters collected.
    [[nodiscard]] SecretBytes Take();

  private:
    struct Place {
        std::uint64_t x = 0;
        std::uint64_t y = 0;
        friend bool operator==(const Place&, const Place&) = default;
    };
    [[nodiscard]] std::uint8_t Stirred(std::uint8_t character);

    const Clock& clock_;
    RandomSource& random_;
    SecretBytes key_;
    std::size_t count_ = 0;
    bool pointerSeen_ = false;
    Place pointer_;
    Place last_; ///< the pointer's place for the last character
    int idleTicks_ = 0;
};

} // namespace zr5
