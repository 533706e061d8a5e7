// What others do to the files of an operation in place while it goes on: another program, another
// run of this one, or the disk itself.

#include "operation/interruption_fixture.h"

#include <filesystem>

namespace zr5::test {
namespace {

class Interference : public Interruption {
  protected:
    static constexpr const char* Foreign = "of somebody else";
    bool ForeignFileIsThere() {
        return std::ranges::any_of(folder.Names(), [this](const std::string& name) {
            return folder.Read(name) == Foreign;
        });
    }
};

TEST_F(Interference, WithWhatWasWrittenIsFoundByReadingItBack) {
    original = "content";
    PrepareFor(Roads[0]);
    // The seal of the block is damaged after it was written and before it is read back.
    Disk().Before(FsCall::FlushFolder, 2, [this] {
        std::string sealed = folder.Read("a.zr5");
        sealed.back() = static_cast<char>(sealed.back() ^ 1);
        folder.Write("a.zr5", sealed);
    });
    EXPECT_NE(Run().find("Write error."), std::string::npos);
    EXPECT_EQ(folder.Read("a"), "content");
    EXPECT_EQ(folder.Names(), Names{"a"});
}

TEST_F(Interference, UnderTheNameOfTheResultReplacesNothing) {
    // At any time: another run may have chosen the same free name.
    unsigned taken = 0;
    for (const Road& road : {Roads[0], Roads[1]}) {
        for (unsigned number = 1;; ++number) {
            PrepareFor(road);
            bool isTaken = false;
            Disk().BeforeAny(number, [&] {
                isTaken = !folder.Has("a.zr5") && folder.Read("a") == input;
                if (isTaken) folder.Write("a.zr5", Foreign);
            });
            const std::string report = Run();
            if (!Disk().AllMet()) break;
            Disk().Reset();
            if (!isTaken) continue;
            ++taken;
            EXPECT_TRUE(ForeignFileIsThere()) << number << report;
            EXPECT_TRUE(IsSafe()) << number << report;
        }
    }
    EXPECT_GT(taken, 5U);
}

TEST_F(Interference, WithTheVerifiedResultKeepsTheOriginal) {
    PrepareFor(Roads[0]);
    beforePurge = [&] { // a box may stand there for hours
        folder.Remove("a.zr5");
        folder.Write("a.zr5", Foreign);
    };
    EXPECT_EQ(Process(Function::Encrypt).outcome, engine_code::WriteError);
    EXPECT_EQ(folder.Read("a"), original);
    EXPECT_TRUE(ForeignFileIsThere());
}

TEST_F(Interference, WithTheOriginalKeepsItsNewVersion) {
    original = PatternBytes(3'000'000);
    const auto saveNewVersion = [&] {
        folder.Write("new", Foreign);
        std::filesystem::rename(folder / "new", folder / "a");
    };
    struct Moment {
        Function function;
        FsCall call;
        unsigned number; ///< of the purge's such calls; 0: before the purge
    };
    for (const Moment& moment :
         {Moment{Function::Encrypt, FsCall::Open, 1}, Moment{Function::Encrypt, FsCall::Write, 2},
          Moment{Function::Decrypt, FsCall::Open, 0}}) {
        beforePurge = {};
        PrepareFor(Road{moment.function});
        beforePurge = [&] {
            if (moment.number == 0) return saveNewVersion();
            Disk().Before(moment.call, moment.number, saveNewVersion);
        };
        const FileResult result = Process(moment.function);
        Disk().Reset();
        EXPECT_EQ(result.outcome, outcome::NotRenamed);
        EXPECT_EQ(folder.Read("a"), Foreign);
        EXPECT_TRUE(IsSafe());
    }
}

TEST_F(Interference, UnderTheNameOfTheOriginalReplacesNothing) {
    folder.Write("a", "mine");
    Disk().Before(FsCall::Rename, 2, [this] { folder.Write("a", "theirs"); });
    const FileResult result = Process(Function::Encrypt);
    EXPECT_EQ(result.outcome, outcome::NotRenamed);
    EXPECT_EQ(folder.Read("a"), "theirs");
    EXPECT_EQ(Decrypted(result.resultPath), "mine");
}

TEST_F(Interference, WithTheInputLeavesWhatCouldBeSalvagedBesideIt) {
    original = PatternBytes(200'000);
    std::string damaged = Sealed(original);
    damaged[100] = static_cast<char>(damaged[100] ^ 1);
    folder.Write("a", damaged);
    const FileResult result = Process(Function::Decrypt);
    EXPECT_EQ(result.outcome, -21);
    EXPECT_EQ(result.resultPath, folder / "a.zr5");
    EXPECT_EQ(folder.Read("a"), damaged);
    EXPECT_EQ(folder.Read("a.zr5"), std::string(65'536, '\0') + original.substr(65'536));
}

} // namespace
} // namespace zr5::test
