// The engine's promises, above all with a failing disk and damaged files, and the cryptography and
// the secrets that it stands on.

#include "keys/classification.h"
#include "libs/cipher/engine_fixture.h"
#include "libs/cipher/file_keys.h"
#include "libs/cipher/md5.h"
#include "libs/cipher/zr5_crypto.h"
#include "libs/system/secret.h"

#include <algorithm>
#include <array>
#include <memory>
#include <openssl/evp.h>
#include <optional>
#include <set>
#include <vector>

namespace zr5::test {
namespace {

using Names = std::set<std::string>;
using enum EngineResult;

constexpr std::string_view Old = "what stood there before";

class EngineFaults : public EngineTest {
  protected:
    struct Direction {
        bool encrypts;
        std::string input;
        std::string result; ///< of decryption
    };

    bool RunOnce(const Direction& direction, bool outputExists, unsigned call, FsStatus status) {
        folder.Write("in", direction.input);
        folder.Remove("out");
        folder.Remove("out.partial");
        if (outputExists) folder.Write("out", Old);
        Disk().Reset();
        Disk().FailAny(call, status);
        const EngineResult code = direction.encrypts ? Encrypt("in", "out") : Decrypt("in", "out");
        const std::vector<FsCall> calls = Disk().Calls();
        const bool met = Disk().AllMet();
        Disk().Reset();
        EXPECT_TRUE(folder.Read("in") == direction.input) << "input changed";
        const bool hasOutput = folder.Has("out");
        Names expected{"in"};
        if (hasOutput) expected.insert("out");
        if (IsPartial(code)) expected.insert("out.partial");
        EXPECT_EQ(folder.Names(), expected);
        const FsCall failed = met ? calls[call - 1] : FsCall::Remove;
        const std::string out = hasOutput ? folder.Read("out") : std::string{};
        if (code == Success) {
            // A piece that cannot be read is read once more, block by block.
            const bool harmless =
                failed == FsCall::Look || (failed == FsCall::Read && !direction.encrypts);
            EXPECT_TRUE(!met || harmless) << "a failure was not noticed";
            EXPECT_TRUE(IsComplete(direction, out));
        } else if (IsPartial(code)) {
            EXPECT_FALSE(direction.encrypts);
            const std::string salvage = folder.Read("out.partial");
            EXPECT_TRUE(!salvage.empty() && direction.result.starts_with(salvage));
            EXPECT_TRUE(!hasOutput || out == Old);
        } else {
            // An old output that was already replaced cannot be brought back: it is complete.
            const bool mayBeComplete = outputExists && failed == FsCall::FlushFolder;
            EXPECT_EQ(hasOutput, outputExists);
            EXPECT_TRUE(!hasOutput || out == Old || (mayBeComplete && IsComplete(direction, out)));
            const bool writes = failed != FsCall::Open && failed != FsCall::Read &&
                                failed != FsCall::FileInfo && failed != FsCall::Look &&
                                failed != FsCall::MoveTo;
            if (status == FsStatus::NoSpace && writes) {
                EXPECT_EQ(code, DiskFull);
            }
        }
        return met;
    }

    [[nodiscard]] bool IsComplete(const Direction& direction, const std::string& out) const {
        if (!direction.encrypts) return out == direction.result;
        folder.Write("check-in", out);
        const bool opens = Decrypt("check-in", "check-out") == Success &&
                           folder.Read("check-out") == direction.input;
        folder.Remove("check-in");
        folder.Remove("check-out");
        return opens;
    }
};

TEST_F(EngineFaults, LeaveTheOutputUntouchedCompleteOrSalvaged) {
    const std::string plain = PatternBytes((std::size_t{1} << 20U) + 70'000);
    const std::string sealed = Sealed(plain);
    for (const Direction& direction :
         {Direction{true, plain, {}}, Direction{false, sealed, plain}}) {
        for (const bool outputExists : {false, true}) {
            for (const FsStatus status :
                 {FsStatus::IoError, FsStatus::NoSpace, FsStatus::NotPermitted}) {
                unsigned call = 1;
                for (bool met = true; met; ++call) {
                    SCOPED_TRACE(testing::Message()
                                 << (direction.encrypts ? "encrypting" : "decrypting") << " call "
                                 << call << " status " << static_cast<int>(status)
                                 << (outputExists ? " over an output" : ""));
                    met = RunOnce(direction, outputExists, call, status);
                }
                EXPECT_GT(call, 12U) << "too few calls seen for the sweep to mean anything";
            }
        }
    }
}

TEST_F(EngineFaults, CannotHideBecauseTheDiskComesBeforeTheName) {
    folder.Write("in", PatternBytes(70'000));
    for (const bool outputExists : {false, true}) {
        if (outputExists) folder.Write("out", Old);
        Disk().Reset();
        ASSERT_EQ(Encrypt("in", "out"), Success);
        const auto calls = Disk().Calls();
        const auto place = [&](FsCall kind) { return std::ranges::find(calls, kind); };
        EXPECT_LT(place(FsCall::Reserve), place(FsCall::Write));
        EXPECT_LT(place(FsCall::CopyAttributes), place(FsCall::Flush));
        EXPECT_EQ(std::find(place(FsCall::Flush), calls.end(), FsCall::Write), calls.end());
        EXPECT_LT(place(FsCall::Flush), place(FsCall::Rename));
        EXPECT_LT(place(FsCall::Rename), place(FsCall::FlushFolder));
        EXPECT_EQ(place(FsCall::FlushFolder) + 1, calls.end());
    }
}

/// What becomes of a damaged file.
struct Ending {
    EngineResult code = WrongKeyOrCorrupt;
    std::string salvage = {}; ///< empty: nothing is written
    std::optional<WrongEnd> wrongEnd = {};
    std::uint64_t missingPlainBytes = 0;
    std::uint64_t lostStretches = 0;
};

class DamagedFiles : public EngineTest {
  protected:
    /// Decrypts `bytes` over an existing output, which stays; and nothing else lies about.
    void ExpectEnding(const std::string& bytes, const Ending& ending) const {
        folder.Remove("out.partial");
        folder.Write("in", bytes);
        folder.Write("out", Old);
        Damage damage;
        Engine().operation_initialization(Key, Direction::Decrypt);
        EXPECT_EQ(Engine().decrypt_file(folder / "in", folder / "out", {.damage = &damage}),
                  ending.code);
        EXPECT_TRUE(folder.Read("in") == bytes && folder.Read("out") == Old);
        const bool salvages = !ending.salvage.empty();
        EXPECT_EQ(folder.Names().size(), salvages ? 3U : 2U);
        if (!salvages) return;
        EXPECT_TRUE(folder.Read("out.partial") == ending.salvage) << "wrong content";
        EXPECT_EQ(damage.wrongEnd, ending.wrongEnd);
        EXPECT_EQ(damage.missingPlainBytes, ending.missingPlainBytes);
        EXPECT_EQ(damage.lostStretches, ending.lostStretches);
    }

    [[nodiscard]] static std::string Flipped(std::string bytes, std::size_t at, unsigned bit = 0) {
        bytes[at] = static_cast<char>(bytes[at] ^ (1 << bit));
        return bytes;
    }
};

/// A file, and what its damage must come to.
struct Victim {
    std::string plain;
    std::string sealed;

    [[nodiscard]] std::size_t BlocksEnd() const { return sealed.size() - HeaderBytes; }
    [[nodiscard]] std::int64_t Lacks(std::size_t bytes) const {
        return static_cast<std::int64_t>(bytes) - static_cast<std::int64_t>(sealed.size());
    }
    /// One bit of the byte at `at` is another.
    [[nodiscard]] Ending Changed(std::size_t at) const {
        if (at < HeaderBytes) return {CorruptEndPartial, plain, WrongEnd{Side::Front, 0}};
        if (at >= BlocksEnd()) return {CorruptEndPartial, plain, WrongEnd{Side::End, 0}};
        if (plain.size() <= PlainBlockBytes) return {};
        const std::size_t from = (at - HeaderBytes) / SealedBlockBytes * PlainBlockBytes;
        const std::size_t lost = std::min(PlainBlockBytes, plain.size() - from);
        Ending ending{OneDamagedBlock, plain};
        ending.salvage.replace(from, lost, lost, '\0');
        ending.lostStretches = 1;
        return ending;
    }
    /// Only the first `bytes` bytes are left.
    [[nodiscard]] Ending CutTo(std::size_t bytes) const {
        if (bytes < HeaderBytes) return {};
        const std::size_t blocks = (bytes - HeaderBytes) / SealedBlockBytes;
        const std::size_t kept = bytes >= BlocksEnd() ? plain.size() : blocks * PlainBlockBytes;
        if (kept == 0) return {};
        return {CorruptEndPartial, plain.substr(0, kept), WrongEnd{Side::End, Lacks(bytes)},
                plain.size() - kept};
    }
    /// Only the last `bytes` bytes are left.
    [[nodiscard]] Ending BegunAt(std::size_t bytes) const {
        const std::size_t gone = sealed.size() - bytes;
        const std::size_t lost = gone <= HeaderBytes ? 0
                                                     : (gone - HeaderBytes + SealedBlockBytes - 1) /
                                                           SealedBlockBytes * PlainBlockBytes;
        if (lost >= plain.size()) return {};
        return {CorruptEndPartial, std::string(lost, '\0') + plain.substr(lost),
                WrongEnd{Side::Front, Lacks(bytes)}, 0, lost == 0 ? 0U : 1U};
    }
};

/// Every byte of headers and tags, the edges of blocks, and every so many bytes between.
constexpr std::size_t BetweenEdges = 509;

TEST_F(DamagedFiles, LoseWhatIsDamagedAndNoMore) {
    for (const std::size_t length : {std::size_t{20}, 2 * PlainBlockBytes + 1}) {
        const std::string plain = PatternBytes(length);
        const Victim victim{plain, Sealed(plain)};
        const std::string& sealed = victim.sealed;
        for (std::size_t at = 0; at < sealed.size();) {
            SCOPED_TRACE(testing::Message() << length << " bytes at " << at);
            ExpectEnding(Flipped(sealed, at, static_cast<unsigned>(at % 8)), victim.Changed(at));
            ExpectEnding(sealed.substr(0, at), victim.CutTo(at));
            if (at != 0) ExpectEnding(sealed.substr(at), victim.BegunAt(sealed.size() - at));
            const std::size_t inBlock = (at + SealedBlockBytes - HeaderBytes) % SealedBlockBytes;
            const bool isInside = inBlock > 2 && inBlock + BetweenEdges < PlainBlockBytes - 2;
            at +=
                isInside && sealed.size() > SealedBlockBytes && at > HeaderBytes ? BetweenEdges : 1;
        }
        for (const std::size_t more : {1UL, 16UL, 300UL, HeaderBytes, sealed.size()}) {
            const auto surplus = static_cast<std::int64_t>(more);
            const std::string other = (sealed + sealed).substr(7, more);
            ExpectEnding(sealed + other, {CorruptEndPartial, plain, WrongEnd{Side::End, surplus}});
            ExpectEnding(other + sealed,
                         {CorruptEndPartial, plain, WrongEnd{Side::Front, surplus}});
        }
    }
}

TEST_F(DamagedFiles, AreCountedUpToNineBlocks) {
    const std::string plain = PatternBytes(20 * PlainBlockBytes); // more than one piece
    std::string damaged = Sealed(plain);
    std::string expected = plain;
    for (std::size_t count = 1; count <= 12; ++count) {
        SCOPED_TRACE(count);
        const std::size_t block = count + 7; // across the edge of a piece, to the last one
        damaged = Flipped(damaged, HeaderBytes + block * SealedBlockBytes + 5);
        expected.replace(block * PlainBlockBytes, PlainBlockBytes, PlainBlockBytes, '\0');
        const int code = -20 - static_cast<int>(std::min<std::size_t>(count, 9));
        ExpectEnding(damaged, {static_cast<EngineResult>(code), expected, {}, 0, 1});
    }
}

TEST_F(DamagedFiles, AWrongKeyIsToldBeforeAnythingIsWritten) {
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

using RoundTrip = EngineTest;

constexpr std::size_t MiB = std::size_t{1} << 20U;

TEST_F(RoundTrip, GivesBackTheSameBytesAtEveryEdge) {
    for (const std::size_t length : {1UL, 2UL, 15UL, 16UL, 17UL, 65535UL, 65536UL, 65537UL,
                                     131072UL, MiB - 1, MiB, MiB + 1, 3 * MiB + 5}) {
        SCOPED_TRACE(length);
        const std::string plain = PatternBytes(length);
        folder.Write("plain", plain);
        folder.Write("back", std::string(length + 1, 'x')); // is replaced
        ASSERT_EQ(Encrypt("plain", "sealed"), EngineResult::Success);
        EXPECT_EQ(folder.Read("sealed").size(), EncryptedLength(length));
        ASSERT_EQ(Decrypt("sealed", "back"), EngineResult::Success);
        EXPECT_EQ(folder.Read("back"), plain);
        EXPECT_EQ(folder.Read("plain"), plain);
        EXPECT_EQ(folder.Names(), (Names{"plain", "sealed", "back"}));
        folder.Empty();
    }
}

TEST_F(RoundTrip, OneRunHasOneSaltForAKeyAndOneForEachFile) {
    const auto salts = [&](std::string_view key) {
        folder.Write("plain", "content");
        EXPECT_EQ(EncryptPath(folder / "plain", folder / "sealed", key), EngineResult::Success);
        const std::string header = folder.Read("sealed").substr(0, HeaderBytes);
        return std::pair(header.substr(RunSaltAt, RunSaltBytes),
                         header.substr(FileSaltAt, FileSaltBytes));
    };
    const auto first = salts(Key);
    folder.Write("earlier", folder.Read("sealed"));
    const auto second = salts(Key);
    EXPECT_EQ(first.first, second.first);
    EXPECT_NE(first.second, second.second);
    const auto otherKey = salts("ANOTHERKEYOFTHEUSER");
    EXPECT_NE(otherKey.first, first.first);
    EXPECT_NE(otherKey.second, first.second);
    EXPECT_NE(salts(Key).first, first.first) << "a salt outlived its key";
    for (const char* sealed : {"earlier", "sealed"})
        EXPECT_EQ(Decrypt(sealed, "back"), EngineResult::Success) << "each with its own salt";
}

TEST_F(RoundTrip, TellsItsProgressInBothDirectionsAtMostEveryFiftyMilliseconds) {
    folder.Write("plain", PatternBytes(3 * MiB + 5));
    std::vector<std::uint64_t> totals;
    const EngineHooks hooks{
        [&](std::uint64_t, std::uint64_t totalBytes) { totals.push_back(totalBytes); }};
    TestClock().step = std::chrono::milliseconds(20);
    Engine().operation_initialization(Key, Direction::Encrypt);
    EXPECT_EQ(Engine().encrypt_file(folder / "plain", folder / "sealed", hooks), Success);
    Engine().operation_initialization(Key, Direction::Decrypt);
    EXPECT_EQ(Engine().decrypt_file(folder / "sealed", folder / "back", hooks), Success);
    EXPECT_EQ(totals, (std::vector{3 * MiB + 5, EncryptedLength(3 * MiB + 5)}));
    TestClock().step = {};
}

TEST_F(RoundTrip, ForgetsTheRunThatWasLongestOutOfUse) {
    StoppedClock clock;
    SystemRandom random;
    MasterKeys masters({1, std::size_t{8} << 10U});
    masters.SetKey("CORRECTHORSEBATTERYSTAPLE");
    const auto masterOf = [&](unsigned run) {
        RunSalt salt{};
        PutBigEndian(run, std::span(salt).first<8>());
        const MasterKey master = *masters.For(salt);
        return std::string(reinterpret_cast<const char*>(master.data()), master.size());
    };
    std::set<std::string> all;
    const std::string first = masterOf(0);
    for (unsigned run = 1; run <= 256; ++run)
        all.insert(masterOf(run));
    EXPECT_EQ(all.size(), 256U);
    EXPECT_EQ(masterOf(0), first) << "derived once more";
    EXPECT_TRUE(all.contains(masterOf(256))) << "and nobody got another's";
}

TEST_F(RoundTrip, GivesEachContentItsOwnSaltEvenWhereTheRandomSourceRepeatsItself) {
    struct : RandomSource {
        void Fill(std::span<std::byte> into) override { std::ranges::fill(into, std::byte{7}); }
    } frozen;
    const std::array<std::byte, KeyBytes> master{};
    std::set<FileSalt> salts;
    const auto add = [&](std::chrono::milliseconds time, FileInfo file, std::string_view content) {
        StoppedClock clock;
        clock.timeOfDay = time;
        FileSalts made(frozen, clock); // counts from one
        salts.insert(*made.Next(master, file, std::as_bytes(std::span(content))));
        return made.Next(master, file, std::as_bytes(std::span(content)));
    };
    FileInfo longer, other;
    longer.lengthBytes = other.identity.inode = 1;
    using std::chrono::milliseconds;
    salts.insert(*add(milliseconds(0), {}, "content"));
    add(milliseconds(1), {}, "content");
    add(milliseconds(0), longer, "content");
    add(milliseconds(0), other, "content");
    add(milliseconds(0), {}, "another");
    EXPECT_EQ(salts.size(), 6U);
}

TEST_F(DamagedFiles, OfANewerVersionAreToldByEitherEnd) {
    for (const bool atEnd : {false, true}) {
        std::string sealed = Sealed("content");
        for (const std::size_t at : {std::size_t{0}, sealed.size() - HeaderBytes})
            sealed[at + VersionAt] = (at != 0) == atEnd ? '\2' : '\0';
        folder.Write("in", sealed);
        Damage damage;
        Engine().operation_initialization(Key, Direction::Decrypt);
        EXPECT_EQ(Engine().check_file(folder / "in", {.damage = &damage}), WrongKeyOrCorrupt);
        EXPECT_TRUE(damage.isOfNewerVersion);
    }
}

using namespace std::string_view_literals;

TEST(Crypto, ComputesItsKnownAnswersAndCountsBlocksInSixtyFourBits) {
    EXPECT_TRUE(CryptoComputesKnownAnswers());
    const SecretBytes key(KeyBytes);
    BlockCipher cipher(key);
    const auto plain = std::as_bytes(std::span("text"sv));
    std::vector<std::byte> sealed(plain.size() + TagBytes);
    std::vector<std::byte> opened(plain.size());
    const std::uint64_t number = 0x0102030405060708U;
    ASSERT_TRUE(cipher.Seal(number, plain, sealed));
    EXPECT_TRUE(cipher.Open(number, sealed, opened));
    EXPECT_FALSE(cipher.Open(number & 0xFFFFFFFFU, sealed, opened));
}

TEST(Crypto, ComputesMd5WhereOnlyApprovedAlgorithmsAreToBeHad) {
    ASSERT_EQ(EVP_default_properties_enable_fips(nullptr, 1), 1);
    EXPECT_EQ(MD5Digest("abc")[0], 0x90);
    ASSERT_EQ(EVP_default_properties_enable_fips(nullptr, 0), 1);
}

TEST(Secrets, HaveOneOwnerAndLeaveNothing) {
    SecretBytes a = SecretBytes::CopyOf("secret");
    SecretBytes copy = a.Clone();
    copy.bytes()[0] = std::byte{'S'};
    EXPECT_EQ(a.text(), "secret");
    const std::byte* place = a.bytes().data();
    const SecretBytes b = std::move(a);
    EXPECT_EQ(b.bytes().data(), place) << "moved, not copied";
    EXPECT_TRUE(a.empty()); // NOLINT(bugprone-use-after-move, clang-analyzer-cplusplus.Move)
    copy.Clear();
    EXPECT_TRUE(copy.empty());
    EXPECT_EQ(SecretBytes(3).text(), "\0\0\0"sv);
    std::string text = "secret";
    Wipe(std::as_writable_bytes(std::span(text)));
    EXPECT_EQ(text, std::string(6, '\0'));
    EXPECT_TRUE(EqualInConstantTime({}, {}));
    EXPECT_FALSE(
        EqualInConstantTime(std::as_bytes(std::span("ab"sv)), std::as_bytes(std::span("abc"sv))));
}

TEST(Secrets, CannotBeTouchedAfterTheyAreGone) {
    const auto readFreed = [] {
        auto secret = std::make_unique<SecretBytes>(SecretBytes::CopyOf("secret"));
        const volatile std::byte* place = secret->bytes().data();
        secret.reset();
        static_cast<void>(*place);
    };
    EXPECT_DEATH(readFreed(), "");
}

TEST(KeyText, IsWhatAPersonCouldHaveWritten) {
    for (const auto key :
         {"plain text"sv, "\t\n\f\r"sv, "\x80\x8A\x9F\xA0\xFF"sv, "padded\0\0\0"sv, "\0\0"sv, ""sv})
        EXPECT_TRUE(KeyIsText(key)) << testing::PrintToString(key);
    for (const auto key : {"in\0side"sv, "\0in front"sv, "a\v"sv, "a\b"sv, "a\x1F"sv, "a\x7F"sv,
                           "a\x81"sv, "a\x8D"sv, "a\x8F"sv, "a\x90"sv, "a\x9D"sv})
        EXPECT_FALSE(KeyIsText(key)) << testing::PrintToString(key);
}

} // namespace
} // namespace zr5::test
