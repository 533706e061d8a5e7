#pragma once

// Reads an encrypted file: its headers, then piece by piece what its blocks decrypt to, whatever
// of them is there.

#include "libs/cipher/jobs.h"

#include <cstdint>
#include <optional>
#include <span>

namespace zr5 {

class SealedReader {
  public:
    /// Uses the buffers of `job` for the pieces, and writes what it finds wrong into its damage.
    /// Both outlive the reader.
    SealedReader(JobContext& job, OpenFile& file) : job_(job), file_(file) {}

    /// Finds a header of a file of this length. Success; WrongKeyOrCorrupt, also when there is no
    /// place for a block; ReadError; NotInitialised; LibraryFailed.
    [[nodiscard]] EngineResult ReadHeaders(std::uint64_t fileBytes);
    /// How many bytes come out, zeros included: less than was encrypted where the end is missing.
    [[nodiscard]] std::uint64_t PlainBytes() const;
    /// So many of them come first: zeros for a lost beginning. `Next` goes on after them.
    [[nodiscard]] std::uint64_t GapBytes() const { return begin_ * PlainBlockBytes; }
    [[nodiscard]] bool IsAtEnd() const { return number_ == end_; }

    struct Piece {
        /// Valid until the next piece; a block that could not be opened is all zeros, so that
        /// everything else keeps its place.
        std::span<const std::byte> plain;
        /// Nothing of the piece could be read; `plain` is empty, and reading ends here.
        bool isCutShort = false;
    };
    /// The next piece of a file that is not at its end.
    [[nodiscard]] Piece Next();

    /// Whether any block could be opened so far.
    [[nodiscard]] bool HasOpened() const { return opened_ != 0; }
    /// Of a file that was read as far as it can be.
    [[nodiscard]] EngineResult Result() const;
    /// How far the reading has come in the file, and its length.
    [[nodiscard]] std::uint64_t ReadBytes() const { return readTo_; }
    [[nodiscard]] std::uint64_t TotalBytes() const { return fileBytes_; }

  private:
    [[nodiscard]] bool ReadAt(std::uint64_t offset, std::span<std::byte> into);
    [[nodiscard]] EngineResult PlaceBlocks(const FileHeader& header, Side found, bool isTwofold);
    [[nodiscard]] std::size_t NextPlainBytes(std::uint64_t blocks) const;
    [[nodiscard]] bool IsDiskThere();
    [[nodiscard]] bool ReadBlockByBlock(std::span<std::byte> sealed);
    [[nodiscard]] std::span<const std::byte> OpenPiece(std::span<const std::byte> sealed);
    void Lose(std::uint64_t plainBytes);

    JobContext& job_;
    OpenFile& file_;
    std::uint64_t fileBytes_ = 0;
    std::optional<BlockCipher> cipher_; ///< set once a header was found
    std::uint64_t plainBytes_ = 0;      ///< as the header says
    std::uint64_t headerAt_ = 0;        ///< place of that header in the file
    std::uint64_t begin_ = 0;           ///< the first block that is there as a whole
    std::uint64_t end_ = 0;             ///< behind the last one
    std::uint64_t number_ = 0;          ///< of the next block
    std::uint64_t readTo_ = 0;          ///< place in the file
    std::uint64_t opened_ = 0;
    std::uint64_t damaged_ = 0; ///< blocks that are there and could not be opened
    bool readFailed_ = false;   ///< of some of them
    std::uint64_t lostTo_ = 0;  ///< where the last lost stretch of the plaintext ends
};

} // namespace zr5
