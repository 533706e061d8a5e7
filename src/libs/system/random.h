#pragma once

// Random bytes are handed in, so that tests can repeat a run.

#include <cstddef>
#include <span>

namespace zr5 {

class RandomSource {
  public:
    virtual ~RandomSource() = default;
    /// Fills `into` with bytes that nobody can predict.
    virtual void Fill(std::span<std::byte> into) = 0;
};

/// The operating system's generator.
class SystemRandom final : public RandomSource {
  public:
    void Fill(std::span<std::byte> into) override;
};

} // namespace zr5
