#include "keys/classification.h"
#include "libs/cipher/md5.h"
#include "libs/cipher/zr5_crypto.h"
#include "libs/system/secret.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <openssl/evp.h>
#include <string>

namespace zr5::test {
namespace {

using namespace std::string_view_literals;

TEST(Crypto, ComputesItsKnownAnswersAndCountsBlocksInSixtyFourBits) {
    EXPECT_TRUE(CryptoComputesKnownAnswers());
    const SecretBytes key(KeyBytes);
    BlockCipher cipher(key);
    const auto plain = std::as_bytes(std::span("text"sv));
    std::vector<std::byte> sealed(plain.size() + TagBytes);
    std::vector<std::byte> opened(plain.size());
    const std::uint64_t number = 0x0102030405060708U;
    ASSERT_TRUE(cipher.Seal(number, false, plain, sealed));
    EXPECT_TRUE(cipher.Open(number, false, sealed, opened));
    EXPECT_FALSE(cipher.Open(number & 0xFFFFFFFFU, false, sealed, opened));
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
