#pragma once

// "Randomness report": how random a file looks, told in the main window in the place of the menu;
// what is measured of a file, and the words for it.

#include "setup/operation_setup.h"
#include "setup/setup_desk.h"
#include "util/machine.h"

#include <cstdint>
#include <functional>
#include <string>

namespace zr5 {

inline constexpr const char* RandomnessReportTitle = "Randomness report";

struct FileRandomness {
    std::size_t side = InputSide;
    std::string path;
    std::uint64_t lengthBytes = 0;
    double value = 0.0;
};

/// Measures the whole file. `progress` is called at most every 50 ms; once `stopped` says so, the
/// measuring ends with RandomnessStopped.
[[nodiscard]] double MeasureWholeFile(Machine& machine, const std::string& path,
                                      ProgressFunction progress,
                                      const std::function<bool()>& stopped);

/// "Input file: …" or "Output file: …".
[[nodiscard]] std::string FileLine(const FileRandomness& file);
/// "Filesize = … bytes".
[[nodiscard]] std::string SizeLine(const FileRandomness& file);
/// "Randomness = …", with three decimals.
[[nodiscard]] std::string RandomnessLine(const FileRandomness& file);
/// What the value means, in plain words.
[[nodiscard]] std::string Meaning(const FileRandomness& file);
/// Why a file has no value; empty when it has one.
[[nodiscard]] std::string WhyNoValue(const FileRandomness& file);

/// The rules of `fraRandomnessFiles`. Measures the whole input or output file of the desk's setup
/// and lets the interface react meanwhile.
class RandomnessReport {
  public:
    /// Closed: the menu stands in its place. Choosing: there are two files, and the user is to say
    /// which. Checking: one is measured. Shown: the result stands there.
    enum class State { Closed, Choosing, Checking, Shown };

    /// Both outlive the report.
    RandomnessReport(SetupDesk& desk, Machine& machine) : desk_(desk), machine_(machine) {}
    /// Called whenever something is shown differently; an empty function for nobody.
    void SetView(std::function<void()> changed) { changed_ = std::move(changed); }

    /// Measures at once when there is only one file, else asks which.
    void Open();
    /// Measures the input or output file. Returns when the result is shown, or when a box
    /// has said why there is none.
    void Check(std::size_t side);
    /// "Not now": back to the menu. Ends a measurement too.
    void Close();

    [[nodiscard]] State state() const { return state_; }
    /// Whether input and output are two files, so that each has its button.
    [[nodiscard]] bool OffersChoice() const;
    /// How much of the file is measured, from 0 to 1.
    [[nodiscard]] double Fraction() const { return fraction_; }
    /// The result while it is shown.
    [[nodiscard]] const FileRandomness& Shown() const { return shown_; }

  private:
    void SetState(State state);

    SetupDesk& desk_;
    Machine& machine_;
    std::function<void()> changed_;
    State state_ = State::Closed;
    FileRandomness shown_;
    double fraction_ = 0.0;
    bool closeRequested_ = false;
};

} // namespace zr5
