#include "libs/cipher/engine_fixture.h"

#include <algorithm>
#include <set>

// Whatever happens to an encrypted file is found, and what is still good comes back.

namespace zr5::test {
namespace {

using Names = std::set<std::string>;
using namespace engine_code;

class Damage : public EngineTest {
  protected:
    /// Decrypts `bytes` over an existing output and checks the code, that the input is as it
    /// was, that nothing else lies about, and that the output holds `expected`.
    void ExpectResult(const std::string& bytes, std::int32_t code,
                      const std::string& expected) const {
        folder.Write("in", bytes);
        folder.Write("out", "what stood there before");
        EXPECT_EQ(Decrypt("in", "out"), code);
        EXPECT_TRUE(folder.Read("in") == bytes) << "input changed";
        const std::string out = folder.Read("out");
        EXPECT_EQ(out.size(), expected.size());
        EXPECT_TRUE(out == expected) << "wrong content";
        EXPECT_EQ(folder.Names(), (Names{"in", "out"}));
    }
    void ExpectRejected(const std::string& bytes) const {
        ExpectResult(bytes, WrongKeyOrCorrupt, "what stood there before");
    }

    [[nodiscard]] static std::string Flipped(std::string bytes, std::size_t at, unsigned bit = 0) {
        bytes[at] = static_cast<char>(bytes[at] ^ (1 << bit));
        return bytes;
    }
    /// `plain` with the blocks of these numbers zeroed.
    [[nodiscard]] static std::string Without(std::string plain,
                                             std::initializer_list<std::size_t> blocks) {
        for (const std::size_t number : blocks) {
            const std::size_t from = number * BlockBytes;
            std::fill_n(plain.begin() + static_cast<std::ptrdiff_t>(from),
                        std::min(BlockBytes, plain.size() - from), '\0');
        }
        return plain;
    }
};

TEST_F(Damage, OfAnyByteOfASmallFileAndByCuttingItOffAnywhereIsFound) {
    const std::string sealed = Sealed("twenty bytes of text");
    for (std::size_t at = 0; at < sealed.size(); ++at) {
        SCOPED_TRACE(at);
        const std::string damaged = Flipped(sealed, at, static_cast<unsigned>(at % 8));
        const std::string cut = sealed.substr(0, at);
        if (at < HeaderBytes)
            ExpectRejected(damaged);
        else
            ExpectResult(damaged, CorruptEndPartial, std::string(20, '\0'));
        if (at <= HeaderBytes + TagBytes)
            ExpectRejected(cut);
        else
            ExpectResult(cut, CorruptEndPartial, std::string(at - HeaderBytes - TagBytes, '\0'));
    }
}

TEST_F(Damage, IsCountedUpToNineBlocks) {
    const std::string plain = PatternBytes(20 * BlockBytes); // more than one piece
    std::string damaged = Sealed(plain);
    std::string expected = plain;
    for (std::size_t count = 1; count <= 12; ++count) {
        SCOPED_TRACE(count);
        const std::size_t block = count + 6; // across the edge of a piece
        damaged = Flipped(damaged, BlockAt(block) + 5);
        expected = Without(expected, {block});
        const auto counted = static_cast<std::int32_t>(std::min<std::size_t>(count, 9));
        ExpectResult(damaged, OneDamagedBlock + 1 - counted, expected);
    }
}

TEST_F(Damage, AWrongKeyIsToldBeforeAnythingIsWritten) {
    folder.Write("in", Sealed(PatternBytes(100'000)));
    for (const std::string_view key : {"CORRECTHORSEBATTERYSTAPLF", "CORRECTHORSEBATTERYSTAPL",
                                       "correcthorsebatterystaple", "C"}) {
        Disk().Reset();
        EXPECT_EQ(DecryptPath(folder / "in", folder / "out", key), WrongKeyOrCorrupt);
        EXPECT_EQ(Disk().WrittenBytes(), 0U);
        EXPECT_EQ(folder.Names(), Names{"in"});
    }
    EXPECT_EQ(Decrypt("in", "out"), Success);
}

} // namespace
} // namespace zr5::test
