#include "libs/cipher/cipher_engine.h"
#include "libs/cipher/zr5_engine.h"
#include "libs/cipher/zr5_format.h"
#include "libs/system/clock.h"
#include "libs/system/file_system.h"
#include "libs/system/random.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>

// The worked example of docs/format.md, in both directions: a file that was encrypted years ago
// must open, whatever has become of the code.

namespace zr5::test {
namespace {

constexpr std::string_view Key = "CORRECTHORSEBATTERYSTAPLE";
constexpr std::string_view Plain = "Hello, world.\n";
constexpr std::string_view SealedHex =
    "5a523501303132333435363738393a3b3c3d3e3f404142434445464748494a4b"
    "4c4d4e4f505152535455565758595a5b5c5d5e5f0d5d9a722273cf793af362d5"
    "711391278e0441abd13aec9d354f9710fff5e27aa24ea28330105af9b8cb21ca"
    "af0ba061246b6d676ec2fc4b8d73a05c9d02";

std::string FromHex(std::string_view hex) {
    std::string bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
    return bytes;
}

/// 30 31 32 … ("0123…") without end.
class CountingRandom : public RandomSource {
  public:
    void Fill(std::span<std::byte> into) override {
        for (std::byte& byte : into)
            byte = static_cast<std::byte>(next_++);
    }

  private:
    unsigned char next_ = 0x30;
};

TEST(Format, OfTheExampleIsWhatTheDocumentSaysAndOpens) {
    const TemporaryFolder folder;
    const auto system = MakeSystemFileSystem();
    SystemClock clock;
    CountingRandom random;
    const auto engine = MakeCipherEngine(*system, clock, random);
    ASSERT_NE(engine->allocate_buffers(), 0);
    const std::string plain = folder.Write("plain", Plain);
    engine->operation_initialization(Key, EngineEncrypt, 0, 0);
    ASSERT_EQ(engine->encrypt_file(plain, folder / "sealed"), engine_code::Success);
    EXPECT_EQ(folder.Read("sealed"), FromHex(SealedHex));
    const std::string sealed = folder.Write("kept for years", FromHex(SealedHex));
    engine->operation_initialization(Key, EngineDecrypt, 0, 0);
    ASSERT_EQ(engine->decrypt_file(sealed, folder / "opened"), engine_code::Success);
    EXPECT_EQ(folder.Read("opened"), Plain);
}

} // namespace
} // namespace zr5::test
