// What is at stake here: at every moment, whatever fails, a complete original or a complete
// encrypted copy is on the disk, and nothing is left lying about that the report does not name.

#include "operation/in_place.h"

#include "libs/engine_fixture.h"
#include "libs/zr5_file_kit.h"
#include "operation/file_ops.h"
#include "support/child_process.h"
#include "support/scripted_user.h"
#include "support/stopped_clock.h"

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace zr5::test {
namespace {

using Names = std::set<std::string>;

class InPlace : public EngineTest {
  protected:
    InPlace() {
        key.keyText = SecretBytes::CopyOf(Key);
        key.keyState = key_state::Keyboard;
    }
    InPlaceResult Process(Function function, const std::string& name) {
        setup.Operation = function;
        return ProcessInPlace({setup, key, list, machine}, folder / name, [this] {
            if (beforePurge) beforePurge();
        });
    }
    /// Makes the folder hold nothing but `a`, plain or encrypted, as `function` wants it.
    void Prepare(Function function, const std::string& original) {
        Disk().Reset();
        folder.Empty();
        folder.Write("a", original);
        if (function == Function::Decrypt) {
            ASSERT_EQ(Process(Function::Encrypt, "a").outcome, 0);
        }
        Disk().Reset();
    }
    /// What a file decrypts to with the test's key; empty when it does not.
    static std::string Decrypted(const std::string& path) {
        Disk().Reset();
        const TemporaryFolder elsewhere;
        if (DecryptPath(path, elsewhere / "out") != 0) return {};
        return elsewhere.Read("out");
    }
    /// Whether `original` is still to be had in full, as it was or encrypted, from some file.
    bool IsSafe(const std::string& original) {
        return std::ranges::any_of(folder.Names(), [&](const std::string& name) {
            return folder.Read(name) == original || Decrypted(folder / name) == original;
        });
    }

    SystemRandom random;
    std::unique_ptr<FileKit> kit = MakeFileKit(Disk(), random);
    ScriptedUser user;
    StoppedClock clock;
    Machine machine{Disk(), Engine(), *kit, user, clock, "/usr/bin/zr5e"};
    OperationSetup setup;
    CurrentKey key;
    WorkList list;
    std::function<void()> beforePurge;
};

TEST_F(InPlace, GivesTheSameFileBackUnderItsName) {
    const std::string original = PatternBytes(70'000);
    for (const std::string& name :
         {std::string("plain.odt"), std::string(" a'b\"\n\xFF "), std::string(255, 'n')}) {
        folder.Write(name, original);
        for (const Function function : {Function::Encrypt, Function::Decrypt}) {
            ASSERT_EQ(Process(function, name).outcome, 0) << name;
            EXPECT_EQ(folder.Read(name) == original, function == Function::Decrypt);
            EXPECT_EQ(folder.Names(), Names{name});
        }
        folder.Empty();
    }
}

TEST_F(InPlace, KeepsModeAndExtendedAttributes) {
    const std::string path = folder.Write("a", "content");
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    ASSERT_EQ(setxattr(path.c_str(), "user.note", "kept", 4, 0), 0);
    for (const Function function : {Function::Encrypt, Function::Decrypt}) {
        ASSERT_EQ(Process(function, "a").outcome, 0);
        struct stat info {};
        ASSERT_EQ(stat(path.c_str(), &info), 0);
        EXPECT_EQ(info.st_mode & 07777U, 0640U);
        std::array<char, 8> value{};
        EXPECT_EQ(getxattr(path.c_str(), "user.note", value.data(), value.size()), 4);
        EXPECT_STREQ(value.data(), "kept");
    }
}

TEST_F(InPlace, SurvivesTheFailureOfEveryCallInBothDirections) {
    const std::string original = PatternBytes(3000);
    for (const Function function : {Function::Encrypt, Function::Decrypt}) {
        for (const FsStatus status :
             {FsStatus::IoError, FsStatus::NoSpace, FsStatus::NotPermitted}) {
            unsigned faults = 0;
            for (unsigned number = 1;; ++number) {
                Prepare(function, original);
                const std::string before = folder.Read("a");
                Disk().FailAny(number, status);
                const InPlaceResult result = Process(function, "a");
                if (!Disk().AllMet()) break;
                ++faults;
                const std::string where = "call " + std::to_string(number);
                const auto names = folder.Names();
                Disk().Reset();
                EXPECT_TRUE(IsSafe(original)) << where;
                if (result.outcome < 0) {
                    EXPECT_EQ(folder.Read("a"), before) << where << ": a failure touched the input";
                    EXPECT_EQ(names, Names{"a"}) << where;
                }
                for (const std::string& name : names) {
                    EXPECT_TRUE(name == "a" || folder / name == result.resultPath)
                        << where << " left " << name << ", which the report does not name";
                }
            }
            EXPECT_GT(faults, 12U);
        }
    }
}

TEST_F(InPlace, IsSafeWhenKilledAtAnySystemCall) {
    const std::string original = PatternBytes(3000);
    for (const Function function : {Function::Encrypt, Function::Decrypt}) {
        unsigned number = 1;
        for (bool killed = true; killed; ++number) {
            Prepare(function, original);
            killed = KilledAtSystemCall(number, [&] { (void)Process(function, "a"); });
            ASSERT_TRUE(IsSafe(original)) << "killed at system call " << number;
        }
        EXPECT_GT(number, 25U) << "the work makes more calls than that";
        EXPECT_EQ(folder.Names(), Names{"a"}) << "the last one was not killed";
    }
}

TEST_F(InPlace, NeverOverwritesAFileThatHasOtherNames) {
    const std::string path = folder.Write("a", "shared content");
    std::filesystem::create_hard_link(path, folder / "b");
    const InPlaceResult result = Process(Function::Encrypt, "a");
    EXPECT_EQ(result.outcome, outcome::NotRenamed);
    EXPECT_EQ(result.resultPath, folder / "a.zr5");
    EXPECT_EQ(folder.Read("a"), "shared content");
    EXPECT_EQ(folder.Read("b"), "shared content");
    EXPECT_EQ(Decrypted(folder / "a.zr5"), "shared content");
}

TEST_F(InPlace, LeavesAnInputAloneThatChangedMeanwhile) {
    folder.Write("a", "first");
    beforePurge = [this] { folder.Write("a", "second, by another program"); };
    EXPECT_EQ(Process(Function::Encrypt, "a").outcome, outcome::NotRenamed);
    EXPECT_EQ(folder.Read("a"), "second, by another program");

    folder.Empty();
    folder.Write("a", "first");
    beforePurge = [this] {
        folder.Remove("a");
        folder.Write("a", "first"); // the same bytes, but somebody else's file
    };
    EXPECT_EQ(Process(Function::Encrypt, "a").outcome, outcome::NotRenamed);
    EXPECT_EQ(folder.Read("a"), "first");
}

TEST_F(InPlace, ReplacesNothingThatAppearedUnderTheName) {
    folder.Write("a", "mine");
    Disk().Before(FsCall::Rename, 2, [this] { folder.Write("a", "theirs"); });
    const InPlaceResult result = Process(Function::Encrypt, "a");
    EXPECT_EQ(result.outcome, outcome::NotRenamed);
    EXPECT_EQ(folder.Read("a"), "theirs");
    EXPECT_EQ(Decrypted(result.resultPath), "mine");
}

TEST_F(InPlace, KeepsWhatCouldBeSalvagedBesideTheInput) {
    const std::string original = PatternBytes(200'000);
    folder.Write("a", original);
    ASSERT_EQ(Process(Function::Encrypt, "a").outcome, 0);
    std::string damaged = folder.Read("a");
    damaged[100] = static_cast<char>(damaged[100] ^ 1);
    folder.Write("a", damaged);
    const InPlaceResult result = Process(Function::Decrypt, "a");
    EXPECT_EQ(result.outcome, -21);
    EXPECT_EQ(result.resultPath, folder / "a.zr5");
    EXPECT_EQ(folder.Read("a"), damaged);
    EXPECT_EQ(folder.Read("a.zr5"), std::string(65'536, '\0') + original.substr(65'536));
}

} // namespace
} // namespace zr5::test
