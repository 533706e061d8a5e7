#pragma once

// Reads an encrypted file: its header, then piece by piece what its blocks decrypt to.

#include "libs/cipher/jobs.h"

#include <cstdint>
#include <optional>
#include <span>

namespace zr5 {

/// What was wrong with the blocks that were read so far.
struct BlockDamage {
    std::uint64_t blocks = 0;   ///< how many could not be opened
    bool endIsWrong = false;    ///< the file was provably cut off or added to
    bool lastIsDamaged = false; ///< the last block of the file could not be opened

    [[nodiscard]] bool Any() const { return blocks != 0 || endIsWrong; }
};

class SealedReader {
  public:
    /// Uses the buffers of `job` for the pieces. Both outlive the reader.
    SealedReader(JobContext& job, OpenFile& file) : job_(job), file_(file) {}

    /// Reads the header of a file of this length. Success; WrongKeyOrCorrupt; ReadError;
    /// NotInitialised.
    [[nodiscard]] EngineResult ReadHeader(std::uint64_t lengthBytes);
    [[nodiscard]] const BlockLayout& Layout() const { return layout_; }
    [[nodiscard]] bool IsAtEnd() const { return readBytes_ == SealedBytes(); }

    struct Piece {
        /// Valid until the next piece; a block that could not be opened is all zeros, so that
        /// everything else keeps its place.
        std::span<const std::byte> plain;
        /// Reading stopped inside the piece; `plain` holds the blocks that came whole.
        bool isCutShort = false;
    };
    /// The next piece of a file that is not at its end.
    [[nodiscard]] Piece Next();

    [[nodiscard]] const BlockDamage& Damage() const { return damage_; }
    /// Whether any block could be opened so far.
    [[nodiscard]] bool HasOpened() const { return number_ > damage_.blocks; }
    /// How far the reading has come, header included, of how much.
    [[nodiscard]] std::uint64_t ReadBytes() const { return HeaderBytes + readBytes_; }
    [[nodiscard]] std::uint64_t TotalBytes() const { return HeaderBytes + SealedBytes(); }

  private:
    [[nodiscard]] std::uint64_t SealedBytes() const {
        return layout_.plainBytes + layout_.blocks * TagBytes;
    }
    std::span<const std::byte> OpenPiece(std::span<const std::byte> sealed);
    void OpenBlock(std::span<const std::byte> sealed, std::span<std::byte> plain);

    JobContext& job_;
    OpenFile& file_;
    BlockLayout layout_;
    std::optional<BlockCipher> cipher_; ///< set once the header was read
    std::uint64_t number_ = 0;          ///< of the next block
    std::uint64_t readBytes_ = 0;       ///< of sealed blocks
    BlockDamage damage_;
};

} // namespace zr5
