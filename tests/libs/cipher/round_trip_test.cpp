#include "libs/cipher/engine_fixture.h"

#include <set>
#include <vector>

namespace zr5::test {
namespace {

using Names = std::set<std::string>;
using RoundTrip = EngineTest;

constexpr std::size_t MiB = std::size_t{1} << 20U;

TEST_F(RoundTrip, GivesBackTheSameBytesAtEveryEdge) {
    for (const std::size_t length : {1UL, 2UL, 15UL, 16UL, 17UL, 65535UL, 65536UL, 65537UL,
                                     131072UL, MiB - 1, MiB, MiB + 1, 3 * MiB + 5}) {
        SCOPED_TRACE(length);
        const std::string plain = PatternBytes(length);
        folder.Write("plain", plain);
        folder.Write("back", std::string(length + 1, 'x')); // is replaced
        ASSERT_EQ(Encrypt("plain", "sealed"), engine_code::Success);
        EXPECT_EQ(folder.Read("sealed").size(), EncryptedLength(length));
        ASSERT_EQ(Decrypt("sealed", "back"), engine_code::Success);
        EXPECT_EQ(folder.Read("back"), plain);
        EXPECT_EQ(folder.Read("plain"), plain);
        EXPECT_EQ(folder.Names(), (Names{"plain", "sealed", "back"}));
        folder.Empty();
    }
}

TEST_F(RoundTrip, ShowsNothingOfTheContent) {
    const std::string plain(200'000, 'A');
    const std::string first = Sealed(plain);
    const std::string second = Sealed(plain);
    EXPECT_EQ(first.find("AAAAAAAA"), std::string::npos);
    // Equal content, equal key: only magic bytes and run salt are equal.
    EXPECT_EQ(first.substr(0, FileSaltAt), second.substr(0, FileSaltAt));
    std::size_t equal = 0;
    for (std::size_t i = FileSaltAt; i < first.size(); ++i)
        equal += first[i] == second[i] ? 1U : 0U;
    // 1 in 256 is equal by chance; ten standard deviations are allowed.
    EXPECT_LT(equal, 200'000 / 256 + 280);
}

TEST_F(RoundTrip, OneRunHasOneSaltForAKeyAndOneForEachFile) {
    const auto salts = [&](std::string_view key) {
        folder.Write("plain", "content");
        EXPECT_EQ(EncryptPath(folder / "plain", folder / "sealed", key), engine_code::Success);
        const std::string header = folder.Read("sealed").substr(0, HeaderBytes);
        return std::pair(header.substr(RunSaltAt, RunSaltBytes),
                         header.substr(FileSaltAt, FileSaltBytes));
    };
    const auto first = salts(Key);
    const auto second = salts(Key);
    EXPECT_EQ(first.first, second.first);
    EXPECT_NE(first.second, second.second);
    const auto otherKey = salts("ANOTHERKEYOFTHEUSER");
    EXPECT_NE(otherKey.first, first.first);
    EXPECT_NE(otherKey.second, first.second);
    EXPECT_NE(salts(Key).first, first.first) << "a salt outlived its key";
}

TEST_F(RoundTrip, TellsProgressAtMostEveryFiftyMilliseconds) {
    folder.Write("plain", PatternBytes(3 * MiB + 5));
    using Done = std::vector<std::uint64_t>;
    Done done;
    std::uint64_t total = 0;
    Engine().SetProgress([&](std::uint64_t doneBytes, std::uint64_t totalBytes) {
        done.push_back(doneBytes);
        total = totalBytes;
    });
    for (const auto& [stepMs, expected] :
         {std::pair{0, Done{}}, {20, {3 * MiB}}, {1000, {MiB, 2 * MiB, 3 * MiB, 3 * MiB + 5}}}) {
        done.clear();
        TestClock().step = std::chrono::milliseconds(stepMs);
        ASSERT_EQ(Encrypt("plain", "sealed"), engine_code::Success);
        EXPECT_EQ(done, expected) << stepMs;
    }
    EXPECT_EQ(total, 3 * MiB + 5);
    ASSERT_EQ(Decrypt("sealed", "back"), engine_code::Success);
    EXPECT_EQ(total, EncryptedLength(3 * MiB + 5));
    TestClock().step = {};
}

} // namespace
} // namespace zr5::test
