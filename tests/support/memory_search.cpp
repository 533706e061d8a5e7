#include "support/memory_search.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <span>
#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

namespace zr5::test {
namespace {

constexpr std::size_t LettersInARow = 8;
constexpr std::size_t WidestLetter = 4;
constexpr std::size_t Overlap = LettersInARow * WidestLetter;
constexpr std::size_t PieceBytes = std::size_t{1} << 20U;

/// What is read of memory lies in a mapping of its own, which is not searched.
class Piece {
  public:
    Piece()
        : data_(static_cast<unsigned char*>(mmap(nullptr, PieceBytes, PROT_READ | PROT_WRITE,
                                                 MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))) {
        if (data_ == MAP_FAILED) throw std::runtime_error("no memory");
    }
    Piece(const Piece&) = delete;
    Piece& operator=(const Piece&) = delete;
    ~Piece() { munmap(data_, PieceBytes); }
    [[nodiscard]] unsigned char* data() const { return data_; }
    [[nodiscard]] bool Holds(std::uintptr_t address) const {
        const auto begin = reinterpret_cast<std::uintptr_t>(data_);
        return address >= begin && address < begin + PieceBytes;
    }

  private:
    unsigned char* data_;
};

/// Whether at `at` letters of `width` bytes are those of the secret from `from` on.
bool Matches(std::span<const unsigned char> at, std::size_t width, const MaskedLetters& secret,
             std::size_t from) {
    for (std::size_t i = 0; i < LettersInARow; ++i) {
        if ((at[i * width] | 0x20) != (secret[from + i] | 0x20)) return false;
        for (std::size_t high = 1; high < width; ++high)
            if (at[i * width + high] != 0) return false;
    }
    return true;
}

void Search(std::span<const unsigned char> bytes, const MaskedLetters& secret,
            const std::string& mapping, std::vector<std::string>& found) {
    for (std::size_t at = 0; at + LettersInARow <= bytes.size(); ++at) {
        const std::span<const unsigned char> here = bytes.subspan(at);
        for (std::size_t from = 0; from + LettersInARow <= secret.size(); ++from) {
            if ((here[0] | 0x20) != (secret[from] | 0x20)) continue;
            for (const std::size_t width : {1U, 2U, 4U}) {
                if (here.size() >= LettersInARow * width && Matches(here, width, secret, from))
                    found.push_back(mapping + " width " + std::to_string(width) + " letter " +
                                    std::to_string(from));
            }
        }
    }
}

} // namespace

std::vector<std::string> FindInOwnMemory(const MaskedLetters& secret) {
    std::vector<std::string> found;
    const Piece piece;
    const int memory = open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
    std::ifstream maps("/proc/self/maps");
    if (memory < 0 || !maps) throw std::runtime_error("own memory cannot be read");
    for (std::string line; std::getline(maps, line);) {
        std::uintptr_t begin = 0;
        std::uintptr_t end = 0;
        char mode[5] = {};
        if (std::sscanf(line.c_str(), "%lx-%lx %4s", &begin, &end, mode) != 3) continue;
        if (mode[1] != 'w' || piece.Holds(begin)) continue;
        for (std::uintptr_t at = begin; at < end; at += PieceBytes - Overlap) {
            const ssize_t got =
                pread(memory, piece.data(), std::min<std::size_t>(PieceBytes, end - at),
                      static_cast<off_t>(at));
            if (got <= 0) break; // a guard page or a device
            Search({piece.data(), static_cast<std::size_t>(got)}, secret, line, found);
            if (static_cast<std::size_t>(got) < PieceBytes) break;
        }
    }
    close(memory);
    return found;
}

} // namespace zr5::test
