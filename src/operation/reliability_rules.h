#pragma once

// The rules of the window `frmReliabilityTest`, which asks how often the reliability test is to be
// performed.

#include "setup/reliability_condition.h"
#include "util/user_port.h"

#include <optional>
#include <string>
#include <string_view>

namespace zr5 {

class ReliabilityTestForm {
  public:
    static constexpr int MostPerformances = 100;

    explicit ReliabilityTestForm(UserPort& user) : user_(user) {}

    [[nodiscard]] static std::string Text();
    /// What the report will show of the key.
    [[nodiscard]] static std::string KeyNote();
    /// What stands in the box at first.
    [[nodiscard]] static std::string InitialNumber() { return "1"; }

    /// The test is to start. False, after a message, when `typed` is no number from 1 to
    /// MostPerformances.
    [[nodiscard]] bool Start(std::string_view typed);
    /// How often it is to be performed; empty until it was started.
    [[nodiscard]] std::optional<int> Performances() const { return performances_; }

  private:
    UserPort& user_;
    std::optional<int> performances_;
};

} // namespace zr5
