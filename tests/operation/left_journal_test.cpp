// What the next start does with a journal that it finds.

#include "operation/interruption_fixture.h"
#include "support/foreign_ways.h"

#include <filesystem>
#include <fstream>

namespace zr5::test {
namespace {

/// A journal, written by hand, of `a` being replaced by `a.zr5`.
class LeftJournal : public Interruption {
  protected:
    LeftJournal() {
        folder.Write("a", "original");
        folder.Write("a.zr5", "result");
        record.inputPath = folder / "a";
        record.outputPath = folder / "a.zr5";
        record.partPath = folder / ".zr5-0123456789abcdef.part";
        record.input = MarkOf(*System().Info(folder / "a"));
        record.output = MarkOf(*System().Info(folder / "a.zr5"));
        record.outputFolder = System().IdentityOf(folder.Path())->inode;
        record.outputVolume = System().VolumeOf(folder.Path());
        record.overwriteHead = "\x01\x02 head";
        record.files = {.done = 12, .inAll = 30};
    }
    void Leave(JournalRecord::Step step) {
        config.Empty();
        record.step = step;
        OperationJournal left(Disk());
        EXPECT_TRUE(left.OpenNew(JournalPath()) && left.Note(record));
    }
    /// A start that finds a journal which it must not obey, and says why.
    void StartRefusing(const std::string& reason) {
        const auto files = folder.Contents();
        const auto journals = config.Contents();
        boxes.clear();
        Start();
        EXPECT_TRUE(folder.Contents() == files && config.Contents() == journals) << reason;
        EXPECT_NE(boxes.find(JournalPath()), std::string::npos) << boxes;
        EXPECT_NE(boxes.find(reason), std::string::npos) << boxes;
    }
    InterruptionEnd End(JournalRecord::Step step) {
        record.step = step;
        OperationJournal journalLeft(Disk());
        EXPECT_TRUE(journalLeft.OpenNew(JournalPath()));
        EXPECT_TRUE(journalLeft.Note(record));
        const InterruptionEnd end = EndInterruptedFile(machine, journalLeft);
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

    record.output = {}; // stopped before it was complete
    folder.Write(".zr5-0123456789abcdef.part", "beginning");
    EXPECT_EQ(End(Writing), InterruptionEnd::Undone);
    EXPECT_EQ(folder.Names(), (Names{"a", "a.zr5"}));

    folder.Remove("a"); // and perhaps the result is all that is left
    EXPECT_EQ(End(Writing), InterruptionEnd::LeftAlone);
    EXPECT_EQ(folder.Names(), Names{"a.zr5"});
    std::filesystem::rename(folder / "a.zr5", record.partPath); // or the part
    EXPECT_EQ(End(Writing), InterruptionEnd::LeftAlone);
    EXPECT_EQ(folder.Names(), Names{".zr5-0123456789abcdef.part"});
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
    record.input = MarkOf(*System().Info(folder / "a"));
    record.input.modifiedNs = 1;
    EXPECT_EQ(End(Replacing), InterruptionEnd::Finished);
    EXPECT_EQ(folder.Read("a"), "result");
}

TEST_F(LeftJournal, TouchesNothingThatSomebodyElseMayHaveWritten) {
    using enum JournalRecord::Step;
    const Names both{"a", "a.zr5"};
    record.input.modifiedNs = 1; // the original was edited in place: the same length
    EXPECT_EQ(End(Replacing), InterruptionEnd::LeftAlone);
    record.input.lengthBytes = 3;
    EXPECT_EQ(End(Replacing), InterruptionEnd::LeftAlone);
    record.input = MarkOf(*System().Info(folder / "a"));
    record.output.lengthBytes = 7; // the result is another file
    EXPECT_EQ(End(Replacing), InterruptionEnd::LeftAlone);
    EXPECT_EQ(folder.Names(), both);
    EXPECT_EQ(folder.Read("a"), "original");
    record.output = MarkOf(*System().Info(folder / "a.zr5"));
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
                   "a\r\n\r\n12 of 30 files had been encrypted before it.\r\n\r\nThe program has "
                   "not touched the file. The unfinished result beside it has been removed."
                   "\r\n\r\nTo go on, start the operation again and leave out what is encrypted "
                   "already.",
               "Interrupted operation", BoxIcon::Information));
    Start();
    EXPECT_EQ(config.Names(), Names{"zr5e.journal-2"});
}

TEST_F(LeftJournal, TellsOfAResultInAnotherFile) {
    const auto boxOfStart = [this](Answer answer) {
        Leave(JournalRecord::Step::WritingElsewhere);
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
              "The program has not touched the file. Its encryption is complete, in\r\n\r\n" +
                  result);
    record.direction = Direction::Decrypt;
    EXPECT_TRUE(boxOfStart(Answer::Ok).ends_with("please decrypt it again."));
    record.output = {};
    folder.Write(".zr5-0123456789abcdef.part", "beginning");
    EXPECT_EQ(boxOfStart(Answer::Ok),
              "The program has not touched the file. The unfinished result has been "
              "overwritten and removed from the folder\r\n\r\n" +
                  folder.Path());
    EXPECT_EQ(folder.Names(), (Names{"a", "a.zr5"}));

    const std::string inputPath = record.inputPath; // whose disk alone may be away
    folder.Write(".zr5-0123456789abcdef.part", "beginning");
    record.inputPath = folder / "not-there/a";
    EXPECT_TRUE(boxOfStart(Answer::Yes).starts_with("Not all of it can be found now."));
    EXPECT_TRUE(folder.Has(".zr5-0123456789abcdef.part"));

    record.inputPath = inputPath;
    record.outputPath = folder / "not-there/a";
    record.partPath = folder / "not-there/.zr5-0123456789abcdef.part";
    EXPECT_TRUE(boxOfStart(Answer::No).starts_with("Not all of it can be found now."));
    EXPECT_EQ(config.Names(), Names{"zr5e.journal"}) << "for another start";
    EXPECT_TRUE(boxOfStart(Answer::Yes).starts_with("Not all of it can be found now."));
    EXPECT_EQ(config.Names(), Names{});
}

TEST_F(LeftJournal, IsNotObeyedWhereSomebodyElseMayWrite) {
    for (const ForeignWay& way : ForeignWays) {
        TakeBack(config);
        Leave(JournalRecord::Step::Replacing);
        if (!MakeForeign(way, config, "zr5e.journal")) continue;
        StartRefusing(way.reason);
        OperationJournal next(Disk());
        EXPECT_EQ(next.OpenNew(JournalPath()), !way.ofFolder) << way.reason;
    }
    TakeBack(config);
    std::filesystem::create_symlink(folder.Write("elsewhere", "x"), JournalPath());
    StartRefusing("It is not a regular file.");
}

TEST_F(LeftJournal, IsNotObeyedWhenItNamesWhatTheProgramDoesNotWorkOn) {
    using enum JournalRecord::Step;
    using Record = JournalRecord;
    const struct {
        std::string Record::*path;
        std::string value;
        bool inPlaceOnly = false;
    } cases[] = {{&Record::partPath, folder / "a"},
                 {&Record::partPath, folder / ".zr5-0123456789abcde.part"},
                 {&Record::partPath, folder / ".zr5-0123456789abcdeg.part"},
                 {&Record::partPath, other / ".zr5-0123456789abcdef.part"},
                 {&Record::outputPath, other / "authorized_keys"},
                 {&Record::outputPath, folder / "a", true},
                 {&Record::inputPath, other / "authorized_keys", true},
                 {&Record::inputPath, folder / "../a"},
                 {&Record::inputPath, "a"},
                 {&Record::inputPath, (folder / "a") + std::string(1, '\0')}};
    const Record plausible = record;
    for (const auto& [path, value, inPlaceOnly] : cases) {
        for (const Record::Step step : {Writing, Replacing, WritingElsewhere}) {
            if (step == WritingElsewhere && inPlaceOnly) continue;
            record = plausible;
            record.*path = value;
            Leave(step);
            StartRefusing("It names files that this program does not work on in this way.");
        }
    }
}

TEST_F(LeftJournal, WaitsForTheFolderThatItWasWrittenFor) {
    using enum JournalRecord::Step;
    folder.Write(".zr5-0123456789abcdef.part", "part");
    const std::string path = folder.Path().substr(0, folder.Path().size() - 1);
    std::filesystem::rename(path, path + ".was");
    std::filesystem::copy(path + ".was", path);
    for (const JournalRecord::Step step : {Writing, Replacing, WritingElsewhere}) {
        Leave(step);
        StartRefusing("Its folder is not the one that it was then");
    }
    std::filesystem::remove_all(path);
    std::filesystem::rename(path + ".was", path);
    for (const unsigned otherVolume : {1U, 0U}) { // as of another disk at the same place
        record.outputVolume += otherVolume;
        Leave(Replacing);
        if (otherVolume != 0) StartRefusing("Its folder is not the one that it was then");
        record.outputVolume -= otherVolume;
    }
    Start();
    EXPECT_EQ(folder.Read("a"), "result");
}

TEST_F(LeftJournal, OverwritesWhatWasDecryptedAndSaysSo) {
    using enum JournalRecord::Step;
    for (const Direction direction : {Direction::Decrypt, Direction::Encrypt}) {
        for (const char* name : {".zr5-0123456789abcdef.part", "a.zr5", "both"}) {
            folder.Remove("a.zr5");
            const std::string path = name == std::string("both") ? record.partPath : folder / name;
            folder.Write(path.substr(folder.Path().size()), "result");
            if (name == std::string("both")) // as where renaming takes two steps
                std::filesystem::create_hard_link(path, record.outputPath);
            record.output = MarkOf(*System().Info(path));
            record.direction = direction;
            std::ifstream open(path); // what stays on the disk when the name goes
            Leave(Writing);
            boxes.clear();
            Start();
            EXPECT_EQ(folder.Names(), Names{"a"});
            const bool decrypts = direction == Direction::Decrypt;
            EXPECT_EQ(std::string(std::istreambuf_iterator<char>(open), {}) == "result", !decrypts);
            EXPECT_EQ(boxes.find("overwritten and removed") != std::string::npos, decrypts);
        }
    }
}

TEST_F(LeftJournal, ShowsWorkThatTakesLong) {
    record.direction = Direction::Decrypt;
    for (const int stepMs : {5, 200}) {
        clock.step = std::chrono::milliseconds(stepMs);
        folder.Write("a.zr5", PatternBytes(5'000'000));
        record.output = MarkOf(*System().Info(folder / "a.zr5"));
        Leave(JournalRecord::Step::Writing);
        Start();
        EXPECT_EQ(folder.Names(), Names{"a"});
        EXPECT_FALSE(user.isWorkShown);
        ASSERT_EQ(user.shownWork.empty(), stepMs == 5);
    }
    EXPECT_NE(user.shownWork.front().text.find(folder / "a"), std::string::npos);
}

TEST_F(LeftJournal, ThatIsDoneWithHoldsNoPathAnyMore) {
    Leave(JournalRecord::Step::Writing);
    std::ifstream open(JournalPath(), std::ios::binary);
    Start();
    EXPECT_EQ(config.Names(), Names{});
    const std::string content{std::istreambuf_iterator<char>(open), {}};
    EXPECT_EQ(content.find(folder.Path()), std::string::npos);
}

TEST_F(LeftJournal, ThatCannotBeReadOrIsNoneStays) {
    Leave(JournalRecord::Step::Replacing);
    for (const bool byStart : {true, false}) {
        Disk().Fail(FsCall::Read, 1);
        OperationJournal next(Disk());
        if (byStart) {
            Start();
        } else {
            EXPECT_TRUE(next.OpenNew(JournalPath()));
        }
        EXPECT_TRUE(boxes.empty());
        Disk().Reset();
    }
    Start();
    EXPECT_EQ(folder.Read("a"), "result");

    config.Write("zr5e.journal", "somebody's diary");
    Start();
    OperationJournal next(Disk());
    EXPECT_TRUE(next.OpenNew(JournalPath()));
    EXPECT_EQ(config.Read("zr5e.journal"), "somebody's diary");
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
    record.inputPath = std::string(20'000, 'x');
    EXPECT_FALSE(writing.Note(record));
    writing.Close();
    OperationJournal reading(Disk());
    ASSERT_TRUE(reading.OpenLeft(JournalPath()).isOpen);
    EXPECT_EQ(reading.Last(), whole);
}

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
    PrepareFor(Ways[0]);
    // The seal of the block is damaged after it was written and before it is read back.
    Disk().Before(FsCall::FlushFolder, 2, [this] {
        std::string sealed = folder.Read("a.zr5-new");
        sealed.back() = static_cast<char>(sealed.back() ^ 1);
        folder.Write("a.zr5-new", sealed);
    });
    EXPECT_NE(Run().find("Write error."), std::string::npos);
    EXPECT_EQ(folder.Read("a"), "content");
    EXPECT_EQ(folder.Names(), Names{"a"});
}

TEST_F(Interference, UnderTheNameOfTheResultReplacesNothing) {
    // At any time: another run may have chosen the same free name.
    unsigned taken = 0;
    for (const Way& way : {Ways[0], Ways[1]}) {
        for (unsigned number = 1;; ++number) {
            PrepareFor(way);
            bool isTaken = false;
            Disk().BeforeAny(number, [&] {
                isTaken = !folder.Has("a.zr5-new") && folder.Read("a") == input;
                if (isTaken) folder.Write("a.zr5-new", Foreign);
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
    PrepareFor(Ways[0]);
    beforePurge = [&] { // a box may stand there for hours
        folder.Remove("a.zr5-new");
        folder.Write("a.zr5-new", Foreign);
    };
    EXPECT_EQ(Process(Direction::Encrypt).engineResult, EngineResult::WriteError);
    EXPECT_EQ(folder.Read("a"), original);
    EXPECT_TRUE(ForeignFileIsThere());
}

TEST_F(Interference, WithTheOriginalKeepsItsNewVersion) {
    original = PatternBytes(3'000'000);
    const std::string newVersion = PatternBytes(original.size(), 2);
    const auto saveNewVersion = [&] {
        folder.Write("new", newVersion);
        std::filesystem::rename(folder / "new", folder / "a");
    };
    struct Moment {
        Direction direction;
        FsCall call;
        unsigned number; ///< of the purge's such calls; 0: before the purge
    };
    for (const Moment& moment :
         {Moment{Direction::Encrypt, FsCall::Open, 1}, Moment{Direction::Encrypt, FsCall::Write, 2},
          Moment{Direction::Decrypt, FsCall::Open, 0}}) {
        beforePurge = {};
        PrepareFor(Way{moment.direction});
        beforePurge = [&] {
            if (moment.number == 0) return saveNewVersion();
            Disk().Before(moment.call, moment.number, saveNewVersion);
        };
        const FileResult result = Process(moment.direction);
        Disk().Reset();
        EXPECT_EQ(result.outcome, Outcome::NotRenamed);
        EXPECT_TRUE(folder.Read("a") == newVersion);
        EXPECT_TRUE(IsSafe());
    }
}

} // namespace
} // namespace zr5::test
