#pragma once

// One engine for all tests of a suite, on a disk that can be made to fail, in a fresh folder for
// every test.

#include "libs/cipher/cipher_engine.h"
#include "libs/cipher/zr5_format.h"
#include "libs/system/random.h"
#include "support/fakes.h"
#include "support/faulty_file_system.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>

namespace zr5::test {

class EngineTest : public testing::Test {
  protected:
    static constexpr std::string_view Key = "CORRECTHORSEBATTERYSTAPLE";
    /// The derivation is not what is tried here.
    static constexpr Argon2Cost SmallCost{1, std::size_t{64} << 10U};

    static void SetUpTestSuite() {
        shared_ = std::make_unique<Shared>();
        ASSERT_TRUE(Engine().allocate_buffers());
    }
    static void TearDownTestSuite() { shared_.reset(); }
    void SetUp() override { Disk().Reset(); }

    static CipherEngine& Engine() { return *shared_->engine; }
    static FaultyFileSystem& Disk() { return shared_->disk; }
    static FileSystem& System() { return *shared_->system; }
    static StoppedClock& TestClock() { return shared_->clock; }

    /// Full paths.
    static EngineResult EncryptPath(const std::string& from, const std::string& to,
                                    std::string_view key = Key) {
        Engine().operation_initialization(key, Direction::Encrypt);
        return Engine().encrypt_file(from, to, {});
    }
    static EngineResult DecryptPath(const std::string& from, const std::string& to,
                                    std::string_view key = Key) {
        Engine().operation_initialization(key, Direction::Decrypt);
        return Engine().decrypt_file(from, to, {});
    }
    /// Names in the test's folder.
    [[nodiscard]] EngineResult Encrypt(std::string_view from, std::string_view to) const {
        return EncryptPath(folder / from, folder / to);
    }
    [[nodiscard]] EngineResult Decrypt(std::string_view from, std::string_view to) const {
        return DecryptPath(folder / from, folder / to);
    }
    /// The bytes of the file that `plain` becomes; nothing is left in the folder.
    [[nodiscard]] std::string Sealed(std::string_view plain) const {
        folder.Write("to-seal", plain);
        EXPECT_EQ(Encrypt("to-seal", "sealed"), EngineResult::Success);
        std::string bytes = folder.Read("sealed");
        folder.Remove("to-seal");
        folder.Remove("sealed");
        return bytes;
    }

    TemporaryFolder folder;

  private:
    struct Shared {
        std::unique_ptr<FileSystem> system = MakeSystemFileSystem();
        FaultyFileSystem disk{*system};
        StoppedClock clock;
        SystemRandom random;
        std::unique_ptr<CipherEngine> engine = MakeCipherEngine(disk, clock, random, SmallCost);
    };
    inline static std::unique_ptr<Shared> shared_;
};

} // namespace zr5::test
