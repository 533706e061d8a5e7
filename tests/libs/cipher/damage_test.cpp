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
    [[nodiscard]] static std::string Block(const std::string& sealed, std::size_t number) {
        return sealed.substr(BlockAt(number), SealedBlockBytes);
    }
    /// `header` and then these blocks.
    [[nodiscard]] static std::string Joined(const std::string& header,
                                            std::initializer_list<std::string> blocks) {
        std::string bytes = header.substr(0, HeaderBytes);
        for (const std::string& block : blocks)
            bytes += block;
        return bytes;
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

TEST_F(Damage, CostsOnlyTheBlockThatItHits) {
    const std::string plain = PatternBytes(2 * BlockBytes + 100);
    const std::string sealed = Sealed(plain);
    for (const std::size_t block : {0U, 1U, 2U}) {
        const std::size_t length = block == 2 ? 100 + TagBytes : SealedBlockBytes;
        for (const std::size_t at : {std::size_t{0}, std::size_t{1}, length / 2,
                                     length - TagBytes - 1, length - TagBytes, length - 1}) {
            SCOPED_TRACE(testing::Message() << "block " << block << " byte " << at);
            ExpectResult(Flipped(sealed, BlockAt(block) + at, 7),
                         block == 2 ? CorruptEndPartial : OneDamagedBlock, Without(plain, {block}));
        }
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

TEST_F(Damage, ByCuttingOffIsToldFromDamageInside) {
    const std::string plain = PatternBytes(3 * BlockBytes);
    const std::string sealed = Sealed(plain);
    const std::string two = plain.substr(0, 2 * BlockBytes);
    for (const auto& [length, expected] :
         {std::pair{BlockAt(3) - 1, Without(plain.substr(0, plain.size() - 1), {2})},
          {BlockAt(2) + TagBytes + 1, two + '\0'},
          {BlockAt(2) + TagBytes, two},
          {BlockAt(2) + 1, two},
          {BlockAt(2), two},
          {BlockAt(2) - 1, Without(two.substr(0, two.size() - 1), {1})},
          {BlockAt(1), plain.substr(0, BlockBytes)}}) {
        SCOPED_TRACE(length);
        ExpectResult(sealed.substr(0, length), CorruptEndPartial, expected);
    }
}

TEST_F(Damage, ByAppendingIsFound) {
    for (const std::size_t length : {std::size_t{20}, 3 * BlockBytes}) {
        const std::string plain = PatternBytes(length);
        const std::string sealed = Sealed(plain);
        for (const std::size_t added : {1U, 15U, 16U, 17U, 100U}) {
            SCOPED_TRACE(testing::Message() << length << " + " << added);
            // A short last block merges with what follows; after a whole one it stands alone.
            const std::string expected = length == 20  ? std::string(length + added, '\0')
                                         : added <= 16 ? plain
                                                       : plain + std::string(added - 16, '\0');
            ExpectResult(sealed + PatternBytes(added), CorruptEndPartial, expected);
        }
    }
}

TEST_F(Damage, ByMovingBlocksIsFound) {
    const std::string plain = PatternBytes(3 * BlockBytes);
    const std::string sealed = Sealed(plain);
    const std::string other = Sealed(PatternBytes(3 * BlockBytes, 2));
    const std::string a = Block(sealed, 0);
    const std::string b = Block(sealed, 1);
    const std::string c = Block(sealed, 2);
    const std::string two = plain.substr(0, 2 * BlockBytes);
    const struct {
        const char* what;
        std::string bytes;
        std::int32_t code;
        std::string expected;
    } cases[] = {
        {"swapped", Joined(sealed, {b, a, c}), -22, Without(plain, {0, 1})},
        {"last one swapped", Joined(sealed, {a, c, b}), -22, Without(plain, {1, 2})},
        {"repeated", Joined(sealed, {a, a, c}), -21, Without(plain, {1})},
        {"left out", Joined(sealed, {a, c}), -18, Without(two, {1})},
        {"first left out", Joined(sealed, {b, c}), -22, Without(two, {0, 1})},
        {"put in", Joined(sealed, {a, a, b, c}), -23,
         Without(plain.substr(0, BlockBytes) + std::string(3 * BlockBytes, '\0'), {})},
        {"last repeated", Joined(sealed, {a, b, c, c}), -18, plain + std::string(BlockBytes, '\0')},
        {"of another file", Joined(sealed, {a, Block(other, 1), c}), -21, Without(plain, {1})},
        {"last of another file", Joined(sealed, {a, b, Block(other, 2)}), -18, Without(plain, {2})},
        {"under another header", Joined(other, {a, b, c}), -23, Without(plain, {0, 1, 2})}};
    for (const auto& entry : cases) {
        SCOPED_TRACE(entry.what);
        ExpectResult(entry.bytes, entry.code, entry.expected);
    }
}

TEST_F(Damage, OfTheHeaderAndForeignFilesAreRejected) {
    const std::string sealed = Sealed("twenty bytes of text");
    const std::string other = Sealed("twenty other letters");
    for (const std::string& bytes :
         {std::string("x"), PatternBytes(5000), std::string(5000, '\0'), sealed.substr(1),
          "ZR5\x02" + sealed.substr(4), // a later version
          sealed.substr(0, FileSaltAt) + other.substr(FileSaltAt, FileSaltBytes) +
              sealed.substr(HeaderTagAt)})
        ExpectRejected(bytes);
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
