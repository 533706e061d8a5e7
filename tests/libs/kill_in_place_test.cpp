#include "libs/engine_fixture.h"
#include "libs/file_kit.h"
#include "libs/zr5_file_kit.h"
#include "support/child_process.h"

#include <set>
#include <stdexcept>

// The program is killed at every system call of the in-place road, in both directions. At every
// moment the complete original or a complete result is on the disk.

namespace zr5::test {
namespace {

class KilledInPlace : public EngineTest {
  protected:
    /// Name and temporary name of the file.
    static constexpr const char* Name = "file";
    static constexpr const char* TemporaryName = "file.zr5";

    void SetUp() override {
        EngineTest::SetUp();
        plain = PatternBytes(2 * BlockBytes + 5);
        sealed = Sealed(plain); // now the engine has the key ready and a child costs little
    }

    /// The in-place road of one file.
    void Process(bool encrypts) const {
        const auto require = [](bool done) {
            if (!done) throw std::runtime_error("the road is blocked");
        };
        std::string temporary = folder / Name;
        require(kit->new_filepath_extension(temporary) == 0);
        require((encrypts ? EncryptPath(folder / Name, temporary)
                          : DecryptPath(folder / Name, temporary)) == engine_code::Success);
        require(kit->purge_file(folder / Name, encrypts ? PurgeOverwrite : PurgeDeleteOnly, true,
                                false) >= PurgeFailureLimit);
        require(Disk().RenameWithoutReplacing(temporary, folder / Name) == FsStatus::Ok);
        require(Disk().FlushFolderOf(folder / Name) == FsStatus::Ok);
    }

    /// Whether the file of this name is a complete result.
    [[nodiscard]] bool IsResult(const char* name, bool encrypts) const {
        if (!folder.Has(name)) return false;
        if (!encrypts) return folder.Read(name) == plain;
        const bool opens = Decrypt(name, "check") == engine_code::Success;
        const bool right = opens && folder.Read("check") == plain;
        folder.Remove("check");
        return right;
    }

    void KillEverywhere(bool encrypts) {
        const std::string& original = encrypts ? plain : sealed;
        unsigned number = 1;
        std::set<std::string> seen; // what was left where
        for (bool killed = true; killed; ++number) {
            SCOPED_TRACE(testing::Message() << "killed at system call " << number);
            folder.Empty();
            folder.Write(Name, original);
            killed = KilledAtSystemCall(number, [&] { Process(encrypts); });
            const bool intact = folder.Has(Name) && folder.Read(Name) == original;
            const bool beside = IsResult(TemporaryName, encrypts);
            const bool inPlace = !intact && IsResult(Name, encrypts);
            EXPECT_TRUE(intact || beside || inPlace);
            seen.insert(std::string(intact ? "original " : "") + (beside ? "beside " : "") +
                        (inPlace ? "in place" : ""));
            if (!killed) {
                EXPECT_TRUE(inPlace);
                EXPECT_EQ(folder.Names(), std::set<std::string>{Name});
            }
        }
        // The kills really went through all stages.
        EXPECT_EQ(seen,
                  (std::set<std::string>{"original ", "original beside ", "beside ", "in place"}));
        EXPECT_GT(number, 30U);
    }

    SystemRandom random;
    std::unique_ptr<FileKit> kit = MakeFileKit(Disk(), random);
    std::string plain;
    std::string sealed;
};

TEST_F(KilledInPlace, EncryptionLosesNothing) {
    KillEverywhere(true);
}

TEST_F(KilledInPlace, DecryptionLosesNothing) {
    KillEverywhere(false);
}

} // namespace
} // namespace zr5::test
