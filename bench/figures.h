#pragma once

// What the benchmarks have in common: medians, and the lines that bench/run.sh gathers into one
// table of figures and goals.

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <vector>

namespace zr5::bench {

inline double Median(std::vector<double> values) {
    std::ranges::sort(values);
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

/// `goal` in words; `isMet` whether `value` meets it.
inline void PrintFigure(const char* name, const char* goal, double value, bool isMet) {
    std::printf("figure | %s | %s | %.2f | %s |\n", name, goal, value, isMet ? "yes" : "no");
    std::fflush(stdout);
}

} // namespace zr5::bench
