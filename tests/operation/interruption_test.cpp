// What is at stake here: wherever the disk fails or the process dies, a complete original or a
// complete result is on the disk, the report names what lies beside it, and the next start leaves
// exactly one complete file under the name.

#include "operation/in_place_fixture.h"
#include "operation/interrupted_operation.h"
#include "operation/operation_run.h"
#include "support/child_process.h"

#include <cstdio>
#include <filesystem>

namespace zr5::test {
namespace {

class Interruption : public InPlace {
  protected:
    Interruption() {
        machine.journalPath = JournalPath();
        user.onAsk = [](const MessageBox&) { return Answer::Ok; };
        list = {{WorkItem::Kind::File, folder / "a", folder / "a"}};
        setup.Folder = {folder.Path(), folder.Path()};
        setup.FileName = {"a", "a"};
    }
    [[nodiscard]] std::string JournalPath() const { return config / "zr5e.journal"; }
    /// The report of an operation on `a`.
    std::string Run(Function function) {
        setup.Operation = function;
        ReportScreen screen(user, clock);
        RunOperation({setup, key, list, machine}, screen);
        return screen.text();
    }
    void Start() { FinishInterruptedOperations(Disk(), *kit, user, JournalPath()); }
    static bool Killed(unsigned number, const std::function<void()>& work) {
        return KilledAtSystemCall(number, work);
    }

    TemporaryFolder config;
};

constexpr std::array BothFunctions = {Function::Encrypt, Function::Decrypt};

TEST_F(Interruption, OfTheDiskAtAnyCallLosesNothingAndHidesNothing) {
    const std::string original = PatternBytes(3000);
    unsigned faults = 0;
    for (const Function function : BothFunctions) {
        for (const FsStatus status :
             {FsStatus::IoError, FsStatus::NoSpace, FsStatus::NotPermitted}) {
            for (unsigned number = 1;; ++number) {
                Prepare(function, original);
                Disk().FailAny(number, status);
                const std::string report = Run(function);
                if (!Disk().AllMet()) break;
                ++faults;
                Disk().Reset();
                const std::string where = "call " + std::to_string(number) + "\n" + report;
                ASSERT_TRUE(IsSafe(original)) << where;
                for (const std::string& name : folder.Names()) {
                    EXPECT_TRUE(name == "a" || report.find(folder / name) != std::string::npos)
                        << name << " is not named by the report of " << where;
                }
                const Names before = folder.Names();
                Start();
                EXPECT_EQ(folder.Names(), before) << where;
                EXPECT_EQ(config.Names(), Names{}) << where;
            }
        }
    }
    EXPECT_GT(faults, 150U);
    std::printf("%u failing calls of the disk, all survived\n", faults);
}

TEST_F(Interruption, OfTheProcessAtAnySystemCallIsMendedByTheNextStart) {
    unsigned kills = 0;
    for (const std::string& original : {std::string("x"), PatternBytes(70'000)}) {
        for (const Function function : BothFunctions) {
            bool killed = true;
            for (unsigned number = 1; killed; ++number) {
                Prepare(function, original);
                killed = Killed(number, [&] { (void)Run(function); });
                ASSERT_TRUE(IsSafe(original)) << "killed at system call " << number;
                Start();
                ASSERT_TRUE(IsWhole(original)) << "killed at system call " << number;
                ASSERT_EQ(config.Names(), Names{}) << "killed at system call " << number;
                kills += killed ? 1 : 0;
            }
        }
    }
    EXPECT_GT(kills, 150U);
    std::printf("%u kills, all mended\n", kills);
}

TEST_F(Interruption, OfTheMendingItselfIsMendedToo) {
    constexpr unsigned Stride = 17; // through the run; every call of each mending
    const std::string original = PatternBytes(3000);
    unsigned kills = 0;
    for (const Function function : BothFunctions) {
        bool killed = true;
        for (unsigned number = 1; killed; number += Stride) {
            bool mendingKilled = true;
            for (unsigned inMending = 1; mendingKilled; ++inMending) {
                Prepare(function, original);
                killed = Killed(number, [&] { (void)Run(function); });
                mendingKilled = Killed(inMending, [&] { Start(); });
                Start();
                ASSERT_TRUE(IsWhole(original)) << number << ", then " << inMending;
                ASSERT_EQ(config.Names(), Names{}) << number << ", then " << inMending;
                ++kills;
            }
        }
    }
    std::printf("%u kills of a mending, all mended\n", kills);
}

TEST_F(Interruption, OfAReadBackThatDiffersKeepsTheOriginal) {
    Prepare(Function::Encrypt, "content");
    // The seal of the block is damaged after it was written and before it is read back.
    Disk().Before(FsCall::FlushFolder, 2, [this] {
        std::string sealed = folder.Read("a.zr5");
        sealed.back() = static_cast<char>(sealed.back() ^ 1);
        folder.Write("a.zr5", sealed);
    });
    EXPECT_NE(Run(Function::Encrypt).find("Write error."), std::string::npos);
    EXPECT_EQ(folder.Read("a"), "content");
    EXPECT_EQ(folder.Names(), Names{"a"});
}

/// A journal, written by hand, of `a` being replaced by `a.zr5`.
class LeftJournal : public Interruption {
  protected:
    LeftJournal() {
        folder.Write("a", "original");
        folder.Write("a.zr5", "result");
        record.originalPath = folder / "a";
        record.resultPath = folder / "a.zr5";
        record.partPath = folder / ".zr5-0123456789abcdef.part";
        record.original = MarkOf(*System().Info(folder / "a"));
        record.result = MarkOf(*System().Info(folder / "a.zr5"));
        record.overwriteHead = "\x01\x02 head";
    }
    InterruptionEnd End(JournalRecord::Step step) {
        record.step = step;
        OperationJournal journalLeft(Disk());
        EXPECT_TRUE(journalLeft.OpenNew(JournalPath()));
        EXPECT_TRUE(journalLeft.Note(record));
        const InterruptionEnd end = EndInterruptedFile(Disk(), *kit, journalLeft);
        EXPECT_TRUE(journalLeft.Note({}));
        return end;
    }
    JournalRecord record;
};

TEST_F(LeftJournal, TakesAwayOnlyWhatTheRunHadMade) {
    using enum JournalRecord::Step;
    EXPECT_EQ(End(Writing), InterruptionEnd::Undone);
    EXPECT_EQ(folder.Names(), Names{"a"});
    EXPECT_EQ(End(Writing), InterruptionEnd::Untouched);

    folder.Write("a.zr5", "of somebody else");
    EXPECT_EQ(End(Writing), InterruptionEnd::Untouched);
    EXPECT_EQ(folder.Read("a.zr5"), "of somebody else");

    record.result = {}; // stopped before it was complete
    folder.Write(".zr5-0123456789abcdef.part", "beginning");
    EXPECT_EQ(End(Writing), InterruptionEnd::Undone);
    EXPECT_EQ(folder.Names(), (Names{"a", "a.zr5"}));

    folder.Remove("a"); // and perhaps the result is all that is left
    EXPECT_EQ(End(Writing), InterruptionEnd::LeftAlone);
    EXPECT_EQ(folder.Names(), Names{"a.zr5"});
}

TEST_F(LeftJournal, CompletesWhatItCanProve) {
    using enum JournalRecord::Step;
    EXPECT_EQ(End(Replacing), InterruptionEnd::Finished);
    EXPECT_EQ(folder.Names(), Names{"a"});
    EXPECT_EQ(folder.Read("a"), "result");
    EXPECT_EQ(End(Replacing), InterruptionEnd::Finished) << "it has been renamed already";

    std::filesystem::rename(folder / "a", folder / "a.zr5"); // the original was deleted
    EXPECT_EQ(End(Replacing), InterruptionEnd::Finished);
    EXPECT_EQ(folder.Read("a"), "result");

    std::filesystem::rename(folder / "a", folder / "a.zr5");
    folder.Write("a", "\x01\x02 headoriginal"); // overwriting had begun
    record.original = MarkOf(*System().Info(folder / "a"));
    record.original.modifiedNs = 1;
    EXPECT_EQ(End(Replacing), InterruptionEnd::Finished);
    EXPECT_EQ(folder.Read("a"), "result");
}

TEST_F(LeftJournal, TouchesNothingThatSomebodyElseMayHaveWritten) {
    using enum JournalRecord::Step;
    const Names both{"a", "a.zr5"};
    record.original.modifiedNs = 1; // the original was edited in place: the same length
    EXPECT_EQ(End(Replacing), InterruptionEnd::LeftAlone);
    record.original.lengthBytes = 3;
    EXPECT_EQ(End(Replacing), InterruptionEnd::LeftAlone);
    record.original = MarkOf(*System().Info(folder / "a"));
    record.result.lengthBytes = 7; // the result is another file
    EXPECT_EQ(End(Replacing), InterruptionEnd::LeftAlone);
    EXPECT_EQ(folder.Names(), both);
    EXPECT_EQ(folder.Read("a"), "original");
    record.result = MarkOf(*System().Info(folder / "a.zr5"));
    folder.Remove("a");
    std::filesystem::create_directory(folder / "a");
    EXPECT_EQ(End(Replacing), InterruptionEnd::LeftAlone);
    EXPECT_EQ(folder.Names(), both);
}

TEST_F(LeftJournal, TellsWhichFileItWas) {
    record.step = JournalRecord::Step::Writing;
    {
        OperationJournal journalLeft(Disk());
        ASSERT_TRUE(journalLeft.OpenNew(JournalPath()));
        ASSERT_TRUE(journalLeft.Note(record));
        Start(); // it is held by a run that goes on
        EXPECT_TRUE(user.asked.empty());
    }
    // A new run leaves it to the next start and takes another name.
    OperationJournal next(Disk());
    ASSERT_TRUE(next.OpenNew(JournalPath()));
    EXPECT_EQ(config.Names(), (Names{"zr5e.journal", "zr5e.journal-2"}));
    user.onAsk = {};
    user.Expect(
        Notice("Vaultline ZR5 was interrupted while this file was being encrypted:\r\n\r\n" +
                   folder.Path() +
                   "a\r\n\r\nThe file is as it was before. The unfinished result beside "
                   "it has been removed.",
               "Interrupted operation", BoxIcon::Information));
    Start();
    EXPECT_EQ(config.Names(), Names{"zr5e.journal-2"});
}

TEST_F(LeftJournal, KeepsTheLastWholeRecordWhenOneIsTornOrCannotBeWritten) {
    OperationJournal writing(Disk());
    ASSERT_TRUE(writing.OpenNew(JournalPath()));
    record.step = JournalRecord::Step::Writing;
    ASSERT_TRUE(writing.Note(record));
    const JournalRecord whole = record;
    record.step = JournalRecord::Step::Replacing;
    Disk().Fail(FsCall::Write, 1, FsStatus::IoError); // half of it is written
    EXPECT_FALSE(writing.Note(record));
    EXPECT_EQ(writing.Last(), whole);
    record.originalPath = std::string(20'000, 'x');
    EXPECT_FALSE(writing.Note(record));
    writing.Close();
    OperationJournal reading(Disk());
    ASSERT_TRUE(reading.OpenLeft(JournalPath()));
    EXPECT_EQ(reading.Last(), whole);
}

} // namespace
} // namespace zr5::test
