// What is at stake here: wherever the disk fails or the process dies, a complete original or a
// complete result is on the disk, the report names what lies beside it, and the next start leaves
// exactly one complete file under the name.

#include "operation/in_place_fixture.h"
#include "operation/interrupted_operation.h"
#include "operation/operation_run.h"
#include "operation/system_call_faults.h"
#include "support/child_process.h"

#include <cstdio>
#include <filesystem>

namespace zr5::test {
namespace {

/// One way through the program: in place, or to another file that is there already or not.
struct Road {
    Function function;
    bool elsewhere = false;
    bool overAnOutput = false;
};
constexpr std::array Roads = {Road{Function::Encrypt},       Road{Function::Decrypt},
                              Road{Function::Encrypt, true}, Road{Function::Encrypt, true, true},
                              Road{Function::Decrypt, true}, Road{Function::Decrypt, true, true}};

class Interruption : public InPlace {
  protected:
    Interruption() {
        machine.journalPath = JournalPath();
        user.onAsk = [this](const MessageBox& box) {
            boxes += box.text;
            return AnswerThatChangesNothing(box.buttons);
        };
        setup.FileName = {"a", "a"};
    }
    [[nodiscard]] std::string JournalPath() const { return config / "zr5e.journal"; }

    /// Makes ready what an operation on `a` finds.
    void PrepareFor(const Road& road) {
        Prepare(road.function, original);
        input = folder.Read("a");
        other.Empty();
        if (road.overAnOutput) other.Write("a", Old);
        boxes.clear();
        setup.Operation = road.function;
        setup.OutputMode =
            road.elsewhere ? OutputTarget::SeparateOutput : OutputTarget::OverwriteInput;
        const TemporaryFolder& output = road.elsewhere ? other : folder;
        setup.Folder = {folder.Path(), output.Path()};
        list = {{WorkItem::Kind::File, folder / "a", output / "a"}};
    }
    /// The report of the operation.
    std::string Run() {
        ReportScreen screen(user, clock);
        RunOperation({setup, key, list, machine}, screen);
        return screen.text();
    }
    void Start() { FinishInterruptedOperations(Disk(), *kit, user, JournalPath()); }
    static bool Killed(unsigned number, const std::function<void()>& work) {
        return KilledAtSystemCall(number, work);
    }

    /// Whether nothing is lost: in place a complete file is somewhere, else the input is as it was
    /// and the output, if there is one, is the old one or complete, or `report` says otherwise.
    bool NothingIsLost(const Road& road, const std::string& report = {}) {
        if (!road.elsewhere) return IsSafe(original);
        if (folder.Names() != Names{"a"} || folder.Read("a") != input) return false;
        if (!other.Has("a")) return !road.overAnOutput;
        const bool isOld = road.overAnOutput && other.Read("a") == Old;
        return isOld || OutputIsComplete(road) || report.find("Partial") != std::string::npos;
    }
    bool OutputIsComplete(const Road& road) {
        const TemporaryFolder& output = road.elsewhere ? other : folder;
        if (road.function == Function::Decrypt) return output.Read("a") == original;
        return Decrypted(output / "a") == original;
    }
    /// Whether the files are such as a start of the program should leave them.
    bool IsMended(const Road& road) {
        const Names outputs = other.Names();
        return NothingIsLost(road) && folder.Names() == Names{"a"} && config.Names().empty() &&
               (outputs.empty() || outputs == Names{"a"});
    }
    /// What lies about that neither `told` nor the setup names.
    Names Unnamed(const std::string& told) const {
        Names unnamed;
        for (const TemporaryFolder* each : {&folder, &other}) {
            for (const std::string& name : each->Names()) {
                if (name != "a" && told.find(*each / name) == std::string::npos)
                    unnamed.insert(name);
            }
        }
        return unnamed;
    }

    static constexpr const char* Old = "what stood there before";
    std::string original = PatternBytes(3000);
    std::string input;
    std::string boxes; ///< what was said since the last preparation
    TemporaryFolder other;
    TemporaryFolder config;
};

TEST_F(Interruption, OfTheDiskAtAnyCallLosesNothingAndHidesNothing) {
    unsigned faults = 0;
    for (const Road& road : Roads) {
        for (const FsStatus status :
             {FsStatus::IoError, FsStatus::NoSpace, FsStatus::NotPermitted}) {
            for (unsigned number = 1;; ++number) {
                PrepareFor(road);
                Disk().FailAny(number, status);
                const std::string report = Run();
                if (!Disk().AllMet()) break;
                ++faults;
                Disk().Reset();
                const std::string where = "call " + std::to_string(number) + "\n" + report;
                ASSERT_TRUE(NothingIsLost(road, report)) << where;
                EXPECT_EQ(Unnamed(report), Names{}) << where;
                const Names before = folder.Names();
                Start();
                EXPECT_EQ(Unnamed(report), Names{}) << where;
                EXPECT_TRUE(boxes.empty() ? folder.Names() == before : IsMended(road))
                    << where << boxes;
                EXPECT_EQ(config.Names(), Names{}) << where;
            }
        }
    }
    EXPECT_GT(faults, 400U);
    std::printf("%u failing calls of the disk, all survived\n", faults);
}

TEST_F(Interruption, OfTheDiskThatIsTakenAwayIsMendedWhenItIsBack) {
    unsigned removals = 0;
    for (const Road& road : Roads) {
        const std::string disk = (road.elsewhere ? other : folder).Path();
        const std::string away = disk.substr(0, disk.size() - 1) + ".away";
        for (unsigned number = 1;; ++number) {
            PrepareFor(road);
            Disk().BeforeAny(number, [&] { std::filesystem::rename(disk, away); });
            const std::string report = Run();
            if (!Disk().AllMet()) break;
            ++removals;
            Disk().Reset();
            const auto told = [](const std::string& by, const char* what) {
                return by.find(what) != std::string::npos;
            };
            Start();
            EXPECT_EQ(told(report, "An unfinished result may be left in "),
                      told(boxes, "It cannot be found now."))
                << number << report << boxes;
            std::filesystem::rename(away, disk);
            ASSERT_TRUE(NothingIsLost(road, report)) << number << report;
            Start();
            EXPECT_EQ(Unnamed(told(report, "Error when renaming") ? report : ""), Names{})
                << number << report << boxes;
            EXPECT_EQ(config.Names(), Names{}) << number;
        }
    }
    EXPECT_GT(removals, 100U);
    std::printf("%u disks taken away, all survived\n", removals);
}

TEST_F(Interruption, OfASystemCallByASignalOrHalfwayIsNotNoticed) {
    unsigned faults = 0;
    for (const Road& road : Roads) {
        for (const SystemCallFault fault : {SystemCallFault::Interrupted, SystemCallFault::Short}) {
            for (unsigned number = 1;; ++number) {
                PrepareFor(road);
                ArmSystemCallFault(fault, number);
                const std::string report = Run();
                if (!DisarmSystemCallFault()) break;
                ++faults;
                EXPECT_NE(report.find("-> "), std::string::npos) << number << report;
                ASSERT_TRUE(IsMended(road) && OutputIsComplete(road)) << number << report;
            }
        }
    }
    EXPECT_GT(faults, 100U);
    std::printf("%u interrupted and short system calls, none noticed\n", faults);
}

TEST_F(Interruption, OfTheProcessAtAnySystemCallIsMendedByTheNextStart) {
    unsigned kills = 0;
    for (const std::size_t length : {1U, 70'000U}) {
        original = PatternBytes(length);
        for (const Road& road : Roads) {
            bool killed = true;
            for (unsigned number = 1; killed; ++number) {
                PrepareFor(road);
                killed = Killed(number, [&] { (void)Run(); });
                ASSERT_TRUE(NothingIsLost(road)) << "killed at system call " << number;
                Start();
                ASSERT_TRUE(IsMended(road)) << "killed at system call " << number << boxes;
                kills += killed ? 1 : 0;
            }
        }
    }
    EXPECT_GT(kills, 500U);
    std::printf("%u kills, all mended\n", kills);
}

TEST_F(Interruption, OfTheMendingItselfIsMendedToo) {
    constexpr unsigned Stride = 17; // through the run; every call of each mending
    unsigned kills = 0;
    for (const Road& road : Roads) {
        bool killed = true;
        for (unsigned number = 1; killed; number += Stride) {
            bool mendingKilled = true;
            for (unsigned inMending = 1; mendingKilled; ++inMending) {
                PrepareFor(road);
                killed = Killed(number, [&] { (void)Run(); });
                mendingKilled = Killed(inMending, [&] { Start(); });
                Start();
                ASSERT_TRUE(IsMended(road)) << number << ", then " << inMending;
                ++kills;
            }
        }
    }
    std::printf("%u kills of a mending, all mended\n", kills);
}

TEST_F(Interruption, OfAReadBackThatDiffersKeepsTheOriginal) {
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
    EXPECT_EQ(End(Writing), InterruptionEnd::LeftAlone);
    EXPECT_EQ(End(WritingElsewhere), InterruptionEnd::Untouched);
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

TEST_F(LeftJournal, TellsOfAResultInAnotherFile) {
    record.step = JournalRecord::Step::WritingElsewhere;
    const auto boxOfStart = [this](Answer answer) {
        {
            OperationJournal left(Disk());
            EXPECT_TRUE(left.OpenNew(JournalPath()) && left.Note(record));
        }
        std::string text;
        user.onAsk = [&](const MessageBox& box) {
            text = box.text.substr(box.text.find("a\r\n\r\n") + 5);
            return answer;
        };
        Start();
        return text;
    };
    const std::string result = folder / "a.zr5";
    EXPECT_EQ(boxOfStart(Answer::Ok),
              "The file is as it was before. Its encryption is complete, in\r\n\r\n" + result);
    record.encrypts = false;
    EXPECT_TRUE(boxOfStart(Answer::Ok).ends_with("please decrypt it again."));
    record.result = {};
    folder.Write(".zr5-0123456789abcdef.part", "beginning");
    EXPECT_EQ(boxOfStart(Answer::Ok),
              "The file is as it was before. The unfinished result has been "
              "removed from the folder\r\n\r\n" +
                  folder.Path());
    EXPECT_EQ(folder.Names(), (Names{"a", "a.zr5"}));

    record.resultPath = folder / "not-there/a";
    record.partPath = folder / "not-there/.zr5-0123456789abcdef.part";
    EXPECT_TRUE(boxOfStart(Answer::No).starts_with("It cannot be found now."));
    EXPECT_EQ(config.Names(), Names{"zr5e.journal"}) << "for another start";
    EXPECT_TRUE(boxOfStart(Answer::Yes).starts_with("It cannot be found now."));
    EXPECT_EQ(config.Names(), Names{});
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
