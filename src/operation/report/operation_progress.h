#pragma once

// How far an operation has come: in the file that is worked on, and as a whole.

#include <chrono>
#include <cstdint>
#include <string>

namespace zr5 {

/// The file that is worked on. It is gone through in one or more passes over its length.
struct FileProgress {
    std::string name; ///< for display; empty when there was none yet
    std::uint64_t lengthBytes = 0;
    unsigned passes = 1;
    unsigned passesDone = 0;
    double ofPass = 0.0; ///< from 0 to 1
    bool isDone = true;

    /// From 0 to 1.
    [[nodiscard]] double Fraction() const;
};

struct OperationProgress {
    std::uint64_t files = 0;
    std::uint64_t filesDone = 0;
    std::uint64_t totalBytes = 0;
    std::uint64_t filesDoneBytes = 0;
    FileProgress file;

    /// Of the files done, and of the current one as far as it is done.
    [[nodiscard]] std::uint64_t BytesDone() const;
    /// From 0 to 1. A file costs time of its own besides its bytes.
    [[nodiscard]] double Fraction() const;
    /// "12 of 340 files, 5.20 of 80.00 MB, 2 minutes left"; `worked` is the time that it took so
    /// far, pauses left out. What is left is said once there is enough to judge by.
    [[nodiscard]] std::string Text(std::chrono::milliseconds worked) const;
};

} // namespace zr5
