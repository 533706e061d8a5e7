// What the next start does with a journal that it finds.

#include "operation/interruption_fixture.h"

#include <filesystem>

namespace zr5::test {
namespace {

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
                   "a\r\n\r\nThe program has not touched the file. The unfinished result beside "
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
              "The program has not touched the file. Its encryption is complete, in\r\n\r\n" +
                  result);
    record.encrypts = false;
    EXPECT_TRUE(boxOfStart(Answer::Ok).ends_with("please decrypt it again."));
    record.result = {};
    folder.Write(".zr5-0123456789abcdef.part", "beginning");
    EXPECT_EQ(boxOfStart(Answer::Ok),
              "The program has not touched the file. The unfinished result has been "
              "removed from the folder\r\n\r\n" +
                  folder.Path());
    EXPECT_EQ(folder.Names(), (Names{"a", "a.zr5"}));

    const std::string inputPath = record.originalPath; // whose disk alone may be away
    folder.Write(".zr5-0123456789abcdef.part", "beginning");
    record.originalPath = folder / "not-there/a";
    EXPECT_TRUE(boxOfStart(Answer::Yes).starts_with("Not all of it can be found now."));
    EXPECT_TRUE(folder.Has(".zr5-0123456789abcdef.part"));

    record.originalPath = inputPath;
    record.resultPath = folder / "not-there/a";
    record.partPath = folder / "not-there/.zr5-0123456789abcdef.part";
    EXPECT_TRUE(boxOfStart(Answer::No).starts_with("Not all of it can be found now."));
    EXPECT_EQ(config.Names(), Names{"zr5e.journal"}) << "for another start";
    EXPECT_TRUE(boxOfStart(Answer::Yes).starts_with("Not all of it can be found now."));
    EXPECT_EQ(config.Names(), Names{});
}

TEST_F(LeftJournal, ThatCannotBeReadOrIsNoneStays) {
    record.step = JournalRecord::Step::Replacing;
    {
        OperationJournal left(Disk());
        ASSERT_TRUE(left.OpenNew(JournalPath()) && left.Note(record));
    }
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
    record.originalPath = std::string(20'000, 'x');
    EXPECT_FALSE(writing.Note(record));
    writing.Close();
    OperationJournal reading(Disk());
    ASSERT_TRUE(reading.OpenLeft(JournalPath()));
    EXPECT_EQ(reading.Last(), whole);
}

} // namespace
} // namespace zr5::test
