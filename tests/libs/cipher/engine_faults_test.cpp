#include "libs/cipher/engine_fixture.h"

#include <algorithm>
#include <set>

// The engine's promise with every call to the disk failing once: the output is untouched,
// complete, or salvaged and said to be so; the input is intact; nothing else is left.

namespace zr5::test {
namespace {

using Names = std::set<std::string>;
using namespace engine_code;

constexpr std::string_view Old = "what stood there before";

class EngineFaults : public EngineTest {
  protected:
    struct Direction {
        bool encrypts;
        std::string input;
        std::string result; ///< of decryption
    };

    /// Whether the fault was met.
    bool RunOnce(const Direction& direction, bool outputExists, unsigned call, FsStatus status) {
        folder.Write("in", direction.input);
        folder.Remove("out");
        if (outputExists) folder.Write("out", Old);
        Disk().Reset();
        Disk().FailAny(call, status);
        const std::int32_t code = direction.encrypts ? Encrypt("in", "out") : Decrypt("in", "out");
        const std::vector<FsCall> calls = Disk().Calls();
        const bool met = Disk().AllMet();
        Disk().Reset();
        EXPECT_TRUE(folder.Read("in") == direction.input) << "input changed";
        const bool hasOutput = folder.Has("out");
        EXPECT_EQ(folder.Names(), hasOutput ? (Names{"in", "out"}) : Names{"in"});
        const FsCall failed = met ? calls[call - 1] : FsCall::Remove;
        const std::string out = hasOutput ? folder.Read("out") : std::string{};
        if (code == Success) {
            EXPECT_TRUE(!met || failed == FsCall::Look) << "a failure was not noticed";
            EXPECT_TRUE(IsComplete(direction, out));
        } else if (code <= ReadErrorPartial) {
            EXPECT_FALSE(direction.encrypts);
            EXPECT_FALSE(out.empty());
            EXPECT_TRUE(direction.result.starts_with(out));
        } else {
            // An old output that was already replaced cannot be brought back: it is complete.
            const bool mayBeComplete = outputExists && failed == FsCall::FlushFolder;
            EXPECT_EQ(hasOutput, outputExists);
            EXPECT_TRUE(!hasOutput || out == Old || (mayBeComplete && IsComplete(direction, out)));
            const bool writes = failed != FsCall::Open && failed != FsCall::Read &&
                                failed != FsCall::FileInfo && failed != FsCall::Look;
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

} // namespace
} // namespace zr5::test
