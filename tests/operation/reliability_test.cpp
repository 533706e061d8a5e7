// The reliability test on real files and the real engine, with damage done in between.

#include "operation/reliability_test.h"

#include "operation/confirmation.h"
#include "operation/interruption_fixture.h"
#include "operation/reliability_rules.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

namespace zr5::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class Reliability : public Interruption {
  protected:
    Reliability() {
        std::filesystem::create_directory(folder / "zr5test");
        user.onAsk = nullptr;
        setup.InputMode = InputSource::FilesInAFolder;
        setup.Folder = {folder / "zr5test/", folder / "zr5test/"};
        setup.FileName = {"*.tst", "*.tst"};
        setup.FilePattern = "*.tst";
        setup.MaxNumFiles = 50;
        engine.onFile = [this](const std::string& from, const std::string& output) {
            const bool encrypts = engine.lastDirection == Direction::Encrypt;
            engine.fileResult = encrypts ? EncryptPath(from, output, engine.lastKey)
                                         : DecryptPath(from, output, engine.lastKey);
            if (afterFile) afterFile(output);
        };
    }
    void Add(const std::string& name, std::size_t length) {
        const auto seed = static_cast<unsigned>(list.Files() + 1);
        const std::string path = folder.Write("zr5test/" + name, PatternBytes(length, seed));
        list.AddFile(path, path, length);
    }
    std::string Run(int performances) {
        OperationJournal journal(Disk());
        RunReliabilityTest({setup, key, list, remembering, screen, journal}, performances);
        EXPECT_EQ(engine.lastKey, "") << "the engine must forget the key";
        return screen.text();
    }
    /// Calls `act` with the output of the `number`-th call of a kind, when it has been made.
    void After(const std::string& call, int number, std::function<void(const std::string&)> act) {
        engine.calls.clear();
        afterFile = [this, call, number, act = std::move(act)](const std::string& output) {
            const auto calls = engine.CallNames();
            if (calls.back() == call && std::ranges::count(calls, call) == number) act(output);
        };
    }
    [[nodiscard]] static std::size_t Count(std::string_view text, std::string_view what) {
        std::size_t count = 0;
        for (auto at = text.find(what); at != text.npos; at = text.find(what, at + 1))
            ++count;
        return count;
    }

    FakeEngine engine; ///< remembers the calls; the work is done by the real one
    std::function<void(const std::string& output)> afterFile;
    Machine remembering{user, Disk(), engine, *kit, clock, random, "/usr/bin/zr5e", config.Path()};
    ReportScreen screen{user, clock};
};

TEST_F(Reliability, ReportsOnePerformanceWithTheCurrentKey) {
    Add("a.tst", 15);
    std::string report = Run(1);
    for (auto at = report.find(folder.Path()); at != report.npos; at = report.find(folder.Path()))
        report.replace(at, folder.Path().size(), "/");
    EXPECT_EQ(report,
              "Number of files: 1\r\n\r\n1 test file in /zr5test/\r\n"
              "25-byte text key: CORRECTHORSEBATTERYSTAPLE\r\n"
              "Encrypting *.tst in the folder /zr5test/ to a file\r\n"
              "         a.tst 15 bytes   -> /zr5test/zr5test-copies/encrypted/a.tst  215 bytes\r\n"
              "Decrypting *.tst in the folder /zr5test/zr5test-copies/encrypted/ to a file\r\n"
              "         a.tst 215 bytes   -> /zr5test/zr5test-copies/decrypted/a.tst  15 bytes\r\n"
              "Comparison of decrypted files with original files\r\na.tst: identical\r\n\r\n"
              "All decrypted files are identical with the original files.\r\n\r\n"
              "Number of files processed: 1\r\nNumber of files encrypted: 1\r\n"
              "Total KB encrypted: 0.01\r\n");
    EXPECT_EQ(screen.PausedDoneText(), "Done");
}

TEST_F(Reliability, GivesFilesOfEveryLengthBackAndLeavesNoTrace) {
    constexpr std::size_t Lengths[] = {1, 15, 16, 65'535, 65'536, 65'537, 1'048'577};
    constexpr int Performances = 5;
    for (const std::size_t count : {2U, 50U}) {
        engine.calls.clear();
        while (list.Files() < count)
            Add(std::to_string(list.Files()) + ".tst", Lengths[list.Files() % std::size(Lengths)]);
        const auto before = folder.Contents();
        const std::string report = Run(Performances);
        EXPECT_EQ(folder.Contents(), before);
        EXPECT_EQ(Count(report, ".tst: identical\r\n"), Performances * count);
        EXPECT_THAT(report, HasSubstr("\r\nReliability test #5 of 5\r\n" + std::to_string(count) +
                                      " test files in "));
        EXPECT_THAT(report, HasSubstr("Number of files encrypted: " +
                                      std::to_string(Performances * count)));
        std::set<std::string> keys;
        for (const auto& call : engine.calls) {
            if (call.name == "operation_initialization") keys.insert(call.input);
        }
        EXPECT_EQ(keys.size(), Performances + 1U) << "with the empty one";
        EXPECT_EQ(engine.calls.front().input, Key);
    }
}

TEST_F(Reliability, StopsAtTheFirstFailureAndKeepsWhatDiffers) {
    const auto change = [](const std::string& path) {
        std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
        file.seekg(69'999);
        const int byte = file.get();
        file.seekp(69'999).put(static_cast<char>(byte ^ 1));
    };
    const auto changeHeader = [](const std::string& path) {
        std::fstream(path, std::ios::binary | std::ios::in | std::ios::out).put('X');
    };
    const auto empty = [](const std::string& path) { std::filesystem::resize_file(path, 0); };
    const auto remove = [](const std::string& path) { std::filesystem::remove(path); };
    using Damage = std::function<void(const std::string&)>;
    const std::tuple<std::string, Damage, std::string, bool> cases[] = {
        {"decrypt_file", change, "Files differ at byte 70000.", true},
        {"encrypt_file", change, "Files differ at byte 65537.", true},
        {"encrypt_file", changeHeader, "Unable to open second file.", true},
        {"decrypt_file", empty, "Second file is empty.", true},
        {"encrypt_file", remove, "Unable to open second file.", false}};
    Add("a.tst", 70'000);
    const auto before = folder.Contents();
    for (const auto& [call, damage, words, isThere] : cases) {
        After(call, 2, damage);
        const std::string report = Run(3);
        auto made = std::ranges::find(engine.calls.rbegin(), engine.calls.rend(), call,
                                      &FakeEngine::Call::name);
        std::string bytes;
        for (const char c : (++made)->input) // the key that was handed over for that call
            bytes += " " + std::to_string(static_cast<unsigned char>(c));
        EXPECT_THAT(report, HasSubstr("a.tst: " + words +
                                      "\r\n\r\nReliability test failed.\r\n"
                                      "Ascii values of bytes in key:" +
                                      bytes + "\r\n"));
        EXPECT_EQ(Count(report, "#3 of 3") + Count(report, "All decrypted"), 0U);
        EXPECT_EQ(screen.PausedDoneText(), "Stopped");
        EXPECT_EQ(folder.Has("zr5test/zr5test-copies/encrypted/a.tst"), isThere) << words;
        EXPECT_THAT(report,
                    HasSubstr("copies are kept in " + (folder / "zr5test/zr5test-copies/\r\n")));
        folder.Remove("zr5test/zr5test-copies");
        EXPECT_EQ(folder.Contents(), before);
    }
}

TEST_F(Reliability, LeavesNothingBehindWhenStoppedInAnyPhase) {
    Add("a.tst", 100);
    Add("b.tst", 100);
    const auto before = folder.Contents();
    const auto stop = [this](const auto&) { screen.StopPressed(); };
    const std::pair<const char*, int> cases[] = {{"encrypt_file", 1}, {"encrypt_file", 2},
                                                 {"decrypt_file", 1}, {"decrypt_file", 2},
                                                 {"decrypt_file", 3}, {"comparison", 0}};
    for (const auto& [call, number] : cases) {
        After(call, number, stop);
        user.onEvents = [&, last = number] {
            if (last == 0 && screen.text().ends_with("a.tst: identical\r\n")) screen.StopPressed();
        };
        const std::string report = Run(2);
        EXPECT_EQ(folder.Contents(), before) << call << number;
        EXPECT_EQ(screen.PausedDoneText(), "Stopped");
        EXPECT_EQ(Count(report, "b.tst: "), number == 3 ? 1U : 0U) << call << number;
    }
}

TEST_F(Reliability, LosesNothingAndSaysWhatIsLeftWhicheverCallFails) {
    Add("a.tst", 100);
    Add("b.tst", 70'000);
    const auto before = folder.Contents();
    int failures = 0;
    for (unsigned number = 1;; ++number) {
        Disk().Reset();
        Disk().FailAny(number, FsStatus::NoSpace);
        const std::string report = Run(1);
        if (!Disk().AllMet()) break;
        const bool isNamed = report.find("copies are kept in ") != report.npos ||
                             report.find("could not remove everything in ") != report.npos;
        if (report.find("All decrypted files are identical") == report.npos) ++failures;
        EXPECT_EQ(folder.Contents() != before, isNamed) << number << "\n" << report;
        folder.Remove("zr5test/zr5test-copies");
        EXPECT_EQ(folder.Contents(), before) << number;
    }
    EXPECT_GT(failures, 10);
}

TEST_F(Reliability, TouchesNothingThatItHasNotMade) {
    Add("a.tst", 100);
    std::filesystem::create_directories(folder / "zr5test/zr5test-copies/decrypted");
    folder.Write("zr5test/zr5test-copies/decrypted/a.tst", "of a run that was killed");
    folder.Write("zr5test/zr5test-copies-2", "a file");
    const auto before = folder.Contents();
    EXPECT_THAT(Run(1), HasSubstr("zr5test-copies-3/encrypted/a.tst  "));
    EXPECT_EQ(folder.Contents(), before);
    After("decrypt_file", 1, [](const std::string& path) { std::ofstream(path + "2") << "mine"; });
    EXPECT_THAT(Run(1), HasSubstr("could not remove everything in " +
                                  (folder / "zr5test/zr5test-copies-3/\r\n")));
    EXPECT_EQ(folder.Read("zr5test/zr5test-copies-3/decrypted/a.tst2"), "mine");
}

TEST_F(Reliability, IsWhatTheSetupMeansAndIsConfirmedAsSuch) {
    FileCount count;
    count.files = count.doneAlready = 2;
    EXPECT_TRUE(IsReliabilityTest(setup));
    EXPECT_THAT(ConfirmationFor(setup, key, count, false).output, Not(HasSubstr("overwritten")));
    EXPECT_THAT(ConfirmationFor(setup, key, count, false).warnings, testing::IsEmpty());
    EXPECT_EQ(ConfirmationFor(setup, key, count, false).leaveOut, "");
    for (void (*change)(OperationSetup&) :
         {+[](OperationSetup& s) { s.Operation = Direction::Decrypt; },
          +[](OperationSetup& s) { s.InputMode = InputSource::SingleFile; },
          +[](OperationSetup& s) { s.SubfolderAnswer = true; },
          +[](OperationSetup& s) { s.FilePattern = "*.TST"; },
          +[](OperationSetup& s) { s.Folder[InputSide] = "/a/zr5test/b/"; },
          +[](OperationSetup& s) { s.Folder[InputSide] = "/a/ZR5TEST/"; },
          +[](OperationSetup& s) { s.Folder[InputSide] = "/a/my-zr5test/"; }}) {
        OperationSetup changed = setup;
        change(changed);
        EXPECT_FALSE(IsReliabilityTest(changed)) << changed.Folder[InputSide];
    }
    setup.Folder[InputSide] = "C:\\a\\ZR5Test\\";
    EXPECT_TRUE(IsReliabilityTest(setup));
}

TEST(ReliabilityTestForm, TakesWholeNumbersFromOneToAHundred) {
    const std::pair<const char*, int> cases[] = {
        {"1", 1},  {" 100 ", 100}, {"0", 0},   {"101", 0},
        {"-1", 0}, {"", 0},        {"2.5", 0}, {"99999999999999999999", 0}};
    for (const auto& [typed, number] : cases) {
        ScriptedUser user;
        ReliabilityTestForm form(user);
        if (number == 0) {
            user.Expect("Number of performances",
                        "The number of performances must be a whole number between 1 and 100.");
        }
        EXPECT_EQ(form.Start(typed), number != 0) << typed;
        EXPECT_EQ(form.Performances().value_or(0), number) << typed;
    }
}

} // namespace
} // namespace zr5::test
