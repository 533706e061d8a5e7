// Genuine files, changed in up to eight steps, which the fuzzer's bytes describe: whatever comes
// of it is found, every block that is still in its place comes back, and nothing else does.
//
//   first byte        the genuine file to begin with
//   0 PLACE BYTE      change bits of one byte
//   1 PLACE N …       put N bytes there over what stood there, and lengthen the file by them
//   2 PLACE PLACE FILE PLACE PLACE    put a part of that genuine file in place of a part
//   PLACE             two bytes: a number of blocks, and so many bytes (signed) from there

#include "fuzz/memory_file_system.h"
#include "libs/cipher/zr5_engine.h"
#include "libs/cipher/zr5_format.h"
#include "libs/system/clock.h"
#include "libs/system/random.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace zr5::fuzz {
namespace {

constexpr std::string_view Key = "CORRECTHORSEBATTERYSTAPLE";
constexpr std::size_t LargestFileBytes = std::size_t{3} << 20U;

void Require(bool condition) {
    if (!condition) std::abort();
}

class CountingRandom final : public RandomSource {
  public:
    void Fill(std::span<std::byte> into) override {
        for (std::byte& byte : into)
            byte = static_cast<std::byte>(next_++ * 0x9E3779B9U >> 24U);
    }

  private:
    std::uint32_t next_ = 1;
};

struct Genuine {
    std::string plain;
    std::string sealed;
};

/// The engine, and files that it has encrypted, all of one run.
struct Bench {
    MemoryFileSystem disk;
    SystemClock clock;
    CountingRandom random;
    std::unique_ptr<CipherEngine> engine = MakeCipherEngine(disk, clock, random);
    std::vector<Genuine> files;

    Bench() {
        Require(engine->allocate_buffers() != 0);
        for (const std::size_t length :
             {std::size_t{1}, std::size_t{100}, BlockBytes, BlockBytes + 1, 3 * BlockBytes - 5,
              3 * BlockBytes, 17 * BlockBytes + 7}) {
            std::string plain(length, '\0');
            random.Fill(std::as_writable_bytes(std::span(plain)));
            disk.files = {{"/plain", plain}};
            engine->operation_initialization(Key, EngineEncrypt, length, 0);
            Require(engine->encrypt_file("/plain", "/sealed") == engine_code::Success);
            files.push_back({std::move(plain), disk.files["/sealed"]});
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

void ChangeBits(std::string& file, Steps& steps) {
    const std::size_t at = steps.Place(file);
    const std::uint8_t bits = steps.Byte();
    if (at < file.size()) file[at] = static_cast<char>(file[at] ^ bits);
}

void PutBytes(std::string& file, Steps& steps) {
    const std::size_t at = steps.Place(file);
    std::string bytes(steps.Byte(), '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(steps.Byte());
    file.replace(at, bytes.size(), bytes);
}

void PutPart(std::string& file, Steps& steps) {
    const std::size_t from = steps.Place(file);
    const std::size_t to = std::max(from, steps.Place(file));
    const std::string& other = steps.File().sealed;
    const std::size_t otherFrom = steps.Place(other);
    const std::size_t otherTo = std::max(otherFrom, steps.Place(other));
    file.replace(from, to - from, other, otherFrom, otherTo - otherFrom);
}

std::string Changed(std::string file, Steps& steps) {
    for (int i = 0; i < 8 && !steps.AtEnd() && file.size() <= LargestFileBytes; ++i) {
        const std::uint8_t step = steps.Byte() % 3;
        if (step == 0) ChangeBits(file, steps);
        if (step == 1) PutBytes(file, steps);
        if (step == 2) PutPart(file, steps);
    }
    // Another run salt costs a slow derivation, so there are three others only.
    const std::string& runSalt = TheBench().files.front().sealed;
    for (std::size_t at = RunSaltAt; at < std::min(FileSaltAt, file.size()); ++at) {
        const int bits = at == RunSaltAt ? (file[at] ^ runSalt[at]) & 3 : 0;
        file[at] = static_cast<char>(runSalt[at] ^ bits);
    }
    return file;
}

/// The part of `text` that makes up piece `number` when it is cut into pieces of `length`.
std::string_view Piece(std::string_view text, std::size_t number, std::size_t length) {
    return number * length < text.size() ? text.substr(number * length, length)
                                         : std::string_view{};
}

struct Outcome {
    std::int32_t code = engine_code::WrongKeyOrCorrupt;
    std::string plain;
};

/// What docs/format.md says must become of a file, found out without opening a block.
Outcome Expected(const std::string& file) {
    const std::string_view header = std::string_view(file).substr(0, HeaderBytes);
    const auto& files = TheBench().files;
    const auto own = std::ranges::find_if(
        files, [&](const Genuine& one) { return one.sealed.starts_with(header); });
    if (own == files.end() || file.size() <= HeaderBytes + TagBytes) return {};

    const std::string_view body = std::string_view(file).substr(HeaderBytes);
    const std::string_view ownBody = std::string_view(own->sealed).substr(HeaderBytes);
    const std::size_t rest = body.size() % SealedBlockBytes;
    const std::size_t blocks = body.size() / SealedBlockBytes + (rest > TagBytes ? 1 : 0);
    bool endIsWrong = rest != 0 && rest <= TagBytes;
    bool lastIsDamaged = false;
    std::int32_t damaged = 0;
    Outcome outcome;
    for (std::size_t i = 0; i < blocks; ++i) {
        const std::string_view sealed = Piece(body, i, SealedBlockBytes);
        const bool isLast = i + 1 == blocks;
        if (sealed == Piece(ownBody, i, SealedBlockBytes)) {
            outcome.plain += Piece(own->plain, i, BlockBytes);
            const bool wasLast = (i + 1) * SealedBlockBytes >= ownBody.size();
            endIsWrong = endIsWrong || wasLast != isLast;
        } else {
            outcome.plain.append(sealed.size() - TagBytes, '\0');
            ++damaged;
            lastIsDamaged = isLast;
        }
    }
    if (endIsWrong || (damaged == 1 && lastIsDamaged))
        outcome.code = engine_code::CorruptEndPartial;
    else if (damaged == 0)
        outcome.code = engine_code::Success;
    else
        outcome.code = engine_code::OneDamagedBlock + 1 - std::min(damaged, 9);
    return outcome;
}

/// `begun` is what `file` was made of.
void Check(const std::string& file, const Genuine& begun) {
    const std::string Before = "what stood there before";
    Bench& bench = TheBench();
    bench.disk.files = {{"/in", file}, {"/out", Before}};
    bench.engine->operation_initialization(Key, EngineDecrypt, file.size(), 0);
    const std::int32_t code = bench.engine->decrypt_file("/in", "/out");
    const Outcome expected = Expected(file);
    Require(code == expected.code);
    Require(bench.disk.files.size() == 2 && bench.disk.files["/in"] == file);
    const bool isUntouched = code == engine_code::WrongKeyOrCorrupt;
    Require(bench.disk.files["/out"] == (isUntouched ? Before : expected.plain));
    const bool isGenuine =
        std::ranges::find(bench.files, file, &Genuine::sealed) != bench.files.end();
    Require((code == engine_code::Success) == isGenuine);

    bench.disk.files["/plain"] = begun.plain;
    const bool agrees = bench.engine->verify_file("/plain", "/in") == engine_code::Success;
    Require(agrees == (file == begun.sealed));
}

} // namespace
} // namespace zr5::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zr5::fuzz;
    Steps steps({data, size});
    const Genuine& begun = steps.File();
    Check(Changed(begun.sealed, steps), begun);
    return 0;
}
