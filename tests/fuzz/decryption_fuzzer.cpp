// Genuine files, changed in up to eight steps, which the fuzzer's bytes describe: whatever comes
// of it is found, every block that is still in its place comes back, and nothing else does.
//
//   first byte        the genuine file to begin with
//   0 or 1 PLACE BYTE change bits of one byte
//   2 PLACE PLACE FILE PLACE PLACE    put a part of that genuine file in place of a part
//   PLACE             two bytes: a number of blocks, and so many bytes (signed) from there

#include "libs/cipher/cipher_engine.h"
#include "libs/cipher/zr5_format.h"
#include "libs/system/clock.h"
#include "libs/system/random.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <vector>

namespace zr5::fuzz {
namespace {

constexpr std::string_view Key = "CORRECTHORSEBATTERYSTAPLE";
/// The derivation is not what is tried here.
constexpr Argon2Cost SmallCost{1, std::size_t{64} << 10U};
constexpr std::size_t LargestFileBytes = std::size_t{3} << 20U;

void Require(bool condition) {
    if (!condition) std::abort();
}

struct Genuine {
    std::string plain;
    std::string sealed;
};

/// The engine, on a folder in memory, and files that it has encrypted, all of one run.
struct Bench {
    int inMemory = setenv("TMPDIR", "/dev/shm", 1);
    test::TemporaryFolder folder;
    std::unique_ptr<FileSystem> disk = MakeSystemFileSystem();
    SystemClock clock;
    SystemRandom random;
    std::unique_ptr<CipherEngine> engine = MakeCipherEngine(*disk, clock, random, SmallCost);
    std::vector<Genuine> files;

    Bench() {
        Require(engine->allocate_buffers());
        for (const std::size_t length :
             {std::size_t{1}, std::size_t{100}, PlainBlockBytes, PlainBlockBytes + 1,
              3 * PlainBlockBytes - 5, 3 * PlainBlockBytes, 17 * PlainBlockBytes + 7}) {
            const std::string plain = test::PatternBytes(length, static_cast<unsigned>(length));
            engine->operation_initialization(Key, Direction::Encrypt);
            Require(engine->encrypt_file(folder.Write("plain", plain), folder / "in", {}) ==
                    EngineResult::Success);
            files.push_back({plain, folder.Read("in")});
        }
    }
};

Bench& TheBench() {
    static Bench bench;
    return bench;
}

/// The fuzzer's bytes, one after the other; zeros after the last.
class Steps {
  public:
    explicit Steps(std::span<const std::uint8_t> bytes) : left_(bytes) {}
    [[nodiscard]] bool AtEnd() const { return left_.empty(); }
    std::uint8_t Byte() {
        if (left_.empty()) return 0;
        const std::uint8_t byte = left_.front();
        left_ = left_.subspan(1);
        return byte;
    }
    std::size_t Place(const std::string& file) {
        constexpr std::uint8_t AtEndOfFile = 255;
        const std::uint8_t block = Byte();
        const auto offset = static_cast<std::int8_t>(Byte());
        const std::size_t from =
            block == AtEndOfFile ? file.size() : HeaderBytes + block * SealedBlockBytes;
        const auto place = static_cast<std::ptrdiff_t>(from) + offset;
        return static_cast<std::size_t>(
            std::clamp(place, std::ptrdiff_t{0}, static_cast<std::ptrdiff_t>(file.size())));
    }
    /// The last genuine file is long and seldom asked for.
    const Genuine& File() {
        const auto& files = TheBench().files;
        const std::size_t number = Byte();
        return number == 255 ? files.back() : files[number % (files.size() - 1)];
    }

  private:
    std::span<const std::uint8_t> left_;
};

void Change(std::string& file, Steps& steps) {
    const bool changesBits = steps.Byte() % 3 != 2;
    const std::size_t at = steps.Place(file);
    if (changesBits) {
        const std::uint8_t bits = steps.Byte();
        if (at < file.size()) file[at] = static_cast<char>(file[at] ^ bits);
        return;
    }
    const std::size_t to = std::max(at, steps.Place(file));
    const std::string& other = steps.File().sealed;
    const std::size_t from = steps.Place(other);
    file.replace(at, to - at, other.substr(from, std::max(from, steps.Place(other)) - from));
}

/// The genuine file whose header these bytes are.
const Genuine* Owner(const std::string& header) {
    const auto& files = TheBench().files;
    const auto own = std::ranges::find(
        files, header, [](const Genuine& one) { return one.sealed.substr(0, HeaderBytes); });
    return own == files.end() ? nullptr : &*own;
}

/// What comes back of a file under the header of `own`, whose first block belongs at `start`, which
/// may lie before the file: its blocks in their places, and zeros; nothing when none is in its
/// place. With the header in front it ends with the last block that is there as a whole.
std::optional<std::string> Recovered(const std::string& file, const Genuine& own,
                                     std::ptrdiff_t start, bool isFromFront) {
    std::string plain;
    bool hasOwn = false;
    const auto size = static_cast<std::ptrdiff_t>(file.size());
    for (std::size_t from = 0; from < own.plain.size(); from += PlainBlockBytes) {
        const std::string part = own.plain.substr(from, PlainBlockBytes);
        const std::size_t at = from / PlainBlockBytes * SealedBlockBytes;
        const auto place = start + static_cast<std::ptrdiff_t>(at);
        const std::size_t length = part.size() + TagBytes;
        if (isFromFront && place + static_cast<std::ptrdiff_t>(length) > size) break;
        const bool isOwn = place >= 0 && file.compare(static_cast<std::size_t>(place), length,
                                                      own.sealed, HeaderBytes + at, length) == 0;
        hasOwn = hasOwn || isOwn;
        plain += isOwn ? part : std::string(part.size(), '\0');
    }
    if (!hasOwn) return std::nullopt;
    return plain;
}

/// By the header in front, or else by the one at the end.
std::optional<std::string> Recovered(const std::string& file) {
    if (file.size() <= HeaderBytes) return std::nullopt;
    if (const Genuine* own = Owner(file.substr(0, HeaderBytes)))
        return Recovered(file, *own, HeaderBytes, true);
    const std::size_t blocksEnd = file.size() - HeaderBytes;
    const Genuine* own = Owner(file.substr(blocksEnd));
    if (own == nullptr) return std::nullopt;
    const auto start = static_cast<std::ptrdiff_t>(blocksEnd) -
                       static_cast<std::ptrdiff_t>(SealedLength(own->plain.size()));
    return Recovered(file, *own, start, false);
}

/// `begun` is what `file` was made of.
void Check(const std::string& file, const Genuine& begun) {
    Bench& bench = TheBench();
    const std::string in = bench.folder.Write("in", file);
    const std::string out = bench.folder.Write("out", "before");
    const std::string plain = bench.folder.Write("plain", begun.plain);
    bench.folder.Remove("out.partial");
    bench.engine->operation_initialization(Key, Direction::Decrypt);
    const EngineResult code = bench.engine->decrypt_file(in, out, {});
    const auto recovered = Recovered(file);
    const bool isGenuine =
        std::ranges::find(bench.files, file, &Genuine::sealed) != bench.files.end();
    Require((code == EngineResult::WrongKeyOrCorrupt) == !recovered);
    Require((code == EngineResult::Success) == isGenuine);
    Require(bench.folder.Read("out") == (isGenuine ? recovered : "before"));
    Require(bench.folder.Has("out.partial") == IsPartial(code));
    Require(!IsPartial(code) || bench.folder.Read("out.partial") == recovered);
    Require(bench.folder.Read("in") == file);
    const bool agrees = bench.engine->verify_file(plain, in, {}) == EngineResult::Success;
    Require(agrees == (file == begun.sealed));
}

} // namespace
} // namespace zr5::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zr5::fuzz;
    Steps steps({data, size});
    const Genuine& begun = steps.File();
    std::string file = begun.sealed;
    for (int i = 0; i < 8 && !steps.AtEnd() && file.size() <= LargestFileBytes; ++i)
        Change(file, steps);
    Check(file, begun);
    return 0;
}
