#pragma once

// A result under construction: a file beside the output path that takes its name only when it
// is complete and on the disk. Whatever fails before, the output path stays untouched.

#include "libs/cipher/cipher_engine.h"
#include "libs/system/file_system.h"
#include "libs/system/random.h"
#include "libs/system/writeback.h"

#include <cstdint>
#include <span>
#include <string>

namespace zr5 {

class PendingOutput {
  public:
    /// `observer` may be null.
    PendingOutput(FileSystem& fileSystem, RandomSource& random, std::string outputPath,
                  OutputObserver* observer = nullptr);
    /// Removes what was not committed.
    ~PendingOutput();
    PendingOutput(const PendingOutput&) = delete;
    PendingOutput& operator=(const PendingOutput&) = delete;

    /// Makes the file and reserves `lengthBytes` for it. An existing output must be a regular
    /// file that may be written. Returns an engine_code; 0 on success.
    [[nodiscard]] std::int32_t Begin(std::uint64_t lengthBytes);
    /// Appends; an engine_code.
    [[nodiscard]] std::int32_t Write(std::span<const std::byte> bytes);
    /// Gives the file the attributes of `source`, brings it to the disk and gives it its name:
    /// an output that was there at `Begin` is replaced in one step, one that appeared since is
    /// not. An engine_code.
    [[nodiscard]] std::int32_t Commit(const OpenFile& source, Extent extent = Extent::Whole);
    /// As Commit, for a result that ends early: the reserved rest is cut off.
    [[nodiscard]] std::int32_t CommitPart(const OpenFile& source);
    /// As Commit, for a file without a source: only its owner may read it (0600).
    [[nodiscard]] std::int32_t CommitPrivate(Extent extent = Extent::Whole);

    /// Whether `Begin` found an output, which `Commit` is going to replace.
    [[nodiscard]] bool Replaces() const { return replaces_; }
    [[nodiscard]] std::uint64_t WrittenBytes() const { return writtenBytes_; }

  private:
    [[nodiscard]] std::string NewName();
    [[nodiscard]] std::int32_t MakeFile();
    [[nodiscard]] FsStatus TakeName();

    FileSystem& fileSystem_;
    RandomSource& random_;
    std::string outputPath_;
    OutputObserver* observer_;
    std::string temporaryPath_; ///< empty while there is no such file
    std::unique_ptr<OpenFile> file_;
    bool replaces_ = false;
    std::uint64_t writtenBytes_ = 0;
    Writeback writeback_;
};

} // namespace zr5
