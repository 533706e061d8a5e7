#include "util/durations.h"

#include <string_view>
#include <vector>

namespace zr5 {
namespace {

constexpr std::uint64_t Minute = 60;
constexpr std::uint64_t Hour = 60 * Minute;
constexpr std::uint64_t Day = 24 * Hour;

struct Parts {
    std::uint64_t days, hours, minutes, seconds;
};

std::string Counted(std::uint64_t count, std::string_view unit) {
    std::string text = std::to_string(count);
    text += unit;
    if (count != 1) text += 's';
    return text;
}

std::string InWords(const Parts& parts, bool rounded) {
    std::vector<std::string> pieces;
    const auto add = [&pieces](std::uint64_t count, std::string_view unit) {
        if (count > 0) pieces.push_back(Counted(count, unit));
    };
    add(parts.days, " day");
    add(parts.hours, " hour");
    add(parts.minutes, " minute");
    add(parts.seconds, " second");
    if (pieces.empty()) return rounded ? "0 minutes" : "0 seconds";
    std::string text = pieces.front();
    for (std::size_t i = 1; i < pieces.size(); ++i) {
        text += i + 1 == pieces.size() ? " and " : ", ";
        text += pieces[i];
    }
    return text;
}

std::string InLetters(const Parts& parts, bool rounded) {
    std::string text;
    const auto add = [&text](std::uint64_t count, std::string_view unit) {
        if (count > 0) text.append(std::to_string(count)).append(unit);
    };
    add(parts.days, "d ");
    add(parts.hours, "h");
    add(parts.minutes, "m");
    if (parts.seconds > 0 && !text.empty() && text.back() != ' ') text += ' ';
    add(parts.seconds, "s");
    if (text.empty()) return rounded ? "0m" : "0s";
    if (text.back() == ' ') text.pop_back();
    return text;
}

} // namespace

std::string FormatDuration(std::uint64_t seconds, DurationForm form, DurationRounding rounding) {
    const bool rounded = rounding == DurationRounding::ToMinutes;
    if (rounded) {
        const std::uint64_t part = seconds % Minute;
        seconds -= part;
        if (part >= Minute / 2) seconds += Minute;
    }
    const Parts parts{seconds / Day, seconds % Day / Hour, seconds % Hour / Minute,
                      seconds % Minute};
    switch (form) {
    case DurationForm::Long:
        return InWords(parts, rounded);
    case DurationForm::Compact:
        return InLetters(parts, rounded);
    }
    return {};
}

} // namespace zr5
