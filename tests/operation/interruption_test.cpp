// What is at stake here: wherever the disk fails or the process dies, a complete original or a
// complete result is on the disk, the report names what lies beside it, and the next start leaves
// exactly one complete file under the name.

#include "operation/interruption_fixture.h"
#include "support/child_process.h"

#include <cerrno>
#include <filesystem>
#include <sys/types.h>

// Faults below the file system's interface: the linker leads the program's calls of these functions
// through here (see tests/CMakeLists.txt).

namespace zr5::test {
namespace {

enum class SystemCallFault {
    Interrupted, ///< by a signal, before anything was done (EINTR)
    Short,       ///< reading and writing move half of what was asked for, at least one byte
    LostWrite,   ///< sync_file_range tells of a failed writing, as it does only once (EIO)
};

std::optional<SystemCallFault> armed;
unsigned callsUntilFault = 0;

bool Meets(SystemCallFault fault) {
    if (armed != fault || --callsUntilFault != 0) return false;
    armed.reset();
    return true;
}

bool IsInterrupted() {
    if (!Meets(SystemCallFault::Interrupted)) return false;
    errno = EINTR;
    return true;
}

std::size_t Moved(std::size_t asked) {
    return asked > 1 && Meets(SystemCallFault::Short) ? asked / 2 : asked;
}

/// The `number`-th call to which it can happen from now on meets with `fault`.
void ArmSystemCallFault(SystemCallFault fault, unsigned number) {
    armed = fault;
    callsUntilFault = number;
}

/// No call does any more. Whether one has.
bool DisarmSystemCallFault() {
    const bool met = !armed;
    armed.reset();
    return met;
}

} // namespace

// The names are the linker's (option --wrap).
// NOLINTBEGIN(bugprone-reserved-identifier, cert-dcl37-c, cert-dcl51-cpp,
// readability-identifier-naming)
extern "C" {
ssize_t __real_read(int file, void* into, size_t count);
ssize_t __real_write(int file, const void* from, size_t count);
int __real_fallocate(int file, int mode, off_t offset, off_t length);
int __real_fdatasync(int file);
int __real_fsync(int file);
int __real_ftruncate(int file, off_t length);
int __real_sync_file_range(int file, off_t offset, off_t length, unsigned flags);

ssize_t __wrap_read(int file, void* into, size_t count) {
    return IsInterrupted() ? -1 : __real_read(file, into, Moved(count));
}
ssize_t __wrap_write(int file, const void* from, size_t count) {
    return IsInterrupted() ? -1 : __real_write(file, from, Moved(count));
}
int __wrap_fallocate(int file, int mode, off_t offset, off_t length) {
    return IsInterrupted() ? -1 : __real_fallocate(file, mode, offset, length);
}
int __wrap_fdatasync(int file) {
    return IsInterrupted() ? -1 : __real_fdatasync(file);
}
int __wrap_fsync(int file) {
    return IsInterrupted() ? -1 : __real_fsync(file);
}
int __wrap_sync_file_range(int file, off_t offset, off_t length, unsigned flags) {
    if (!Meets(SystemCallFault::LostWrite))
        return __real_sync_file_range(file, offset, length, flags);
    errno = EIO;
    return -1;
}
int __wrap_ftruncate(int file, off_t length) {
    return IsInterrupted() ? -1 : __real_ftruncate(file, length);
}
}
// NOLINTEND(bugprone-reserved-identifier, cert-dcl37-c, cert-dcl51-cpp,
// readability-identifier-naming)

namespace {

TEST_F(Interruption, OfTheDiskAtAnyCallLosesNothingAndHidesNothing) {
    unsigned faults = 0;
    unsigned partial = 0;
    for (const Way& way : Ways) {
        for (const FsStatus status :
             {FsStatus::IoError, FsStatus::NoSpace, FsStatus::NotPermitted}) {
            // Of a long file a part is written before the disk fails.
            original = PatternBytes(status == FsStatus::IoError ? 1'100'000 : 3000);
            for (unsigned number = 1;; ++number) {
                PrepareFor(way);
                Disk().FailAny(number, status);
                const std::string report = Run();
                if (!Disk().AllMet()) break;
                ++faults;
                partial += report.find("Partial plaintext") != std::string::npos ? 1U : 0U;
                Disk().Reset();
                const std::string where = "call " + std::to_string(number) + "\n" + report;
                ASSERT_TRUE(NothingIsLost(way, report)) << where;
                EXPECT_EQ(Unnamed(report), Names{}) << where;
                const Names before = folder.Names();
                Start();
                EXPECT_EQ(Unnamed(report), Names{}) << where;
                EXPECT_TRUE(boxes.empty() ? folder.Names() == before : IsMended(way))
                    << where << boxes;
                EXPECT_EQ(config.Names(), Names{}) << where;
            }
        }
    }
    EXPECT_GT(faults, 400U);
    EXPECT_GT(partial, 0U);
}

TEST_F(Interruption, OfTheDiskThatIsTakenAwayIsMendedWhenItIsBack) {
    unsigned removals = 0;
    for (const Way& way : Ways) {
        const std::string disk = (way.elsewhere ? other : folder).Path();
        const std::string away = disk.substr(0, disk.size() - 1) + ".away";
        for (const bool leavesFolder : {false, true}) { // as a mount point stays
            for (unsigned number = 1;; ++number) {
                PrepareFor(way);
                Disk().BeforeAny(number, [&] {
                    std::filesystem::rename(disk, away);
                    if (leavesFolder) std::filesystem::create_directory(disk);
                });
                const std::string report = Run();
                if (!Disk().AllMet()) break;
                ++removals;
                Disk().Reset();
                const bool wentThere = leavesFolder && !std::filesystem::is_empty(disk);
                Start();
                const bool mayBeLeft =
                    report.find("An unfinished result may be left in ") != std::string::npos;
                const bool isNamed = report.find("Error when renaming") != std::string::npos ||
                                     report.find("has not confirmed") != std::string::npos;
                if (!wentThere) {
                    EXPECT_EQ(mayBeLeft || isNamed,
                              boxes.find("Not all of it can be") != std::string::npos)
                        << number << report << boxes;
                }
                std::filesystem::remove_all(disk);
                std::filesystem::rename(away, disk);
                ASSERT_TRUE(NothingIsLost(way, report)) << number << report;
                Start();
                EXPECT_EQ(Unnamed(""), Names{}) << number << report << boxes;
                EXPECT_EQ(config.Names(), Names{}) << number;
            }
        }
    }
    EXPECT_GT(removals, 200U);
}

TEST_F(Interruption, OfADiskThatIsNotThereLeavesNothingAndStopsNothing) {
    PrepareFor(Ways[2]);
    list = {};
    for (const char* name : {"b", "c", "d", "e", "f", "g", "h", "i", "j", "k"}) {
        list.AddFile(folder.Write(name, "content"), other / "not-there/" + std::string(name));
    }
    list.AddFile(folder / "a", other / "a");
    EXPECT_EQ(Run().find("may be left"), std::string::npos);
    EXPECT_TRUE(other.Has("a"));
    EXPECT_EQ(config.Names(), Names{});
}

TEST_F(Interruption, OfTheLastNoteLeavesAPartThatTheReportNames) {
    unsigned named = 0;
    for (unsigned number = 1;; ++number) {
        PrepareFor(Ways[1]);
        std::string damaged = Sealed(PatternBytes(200'000));
        damaged[70'000] = static_cast<char>(damaged[70'000] ^ 1);
        folder.Write("a", damaged);
        Disk().Reset();
        Disk().FailAny(number);
        const std::string report = Run();
        if (!Disk().AllMet()) break;
        Disk().Reset();
        Start();
        EXPECT_EQ(config.Names(), Names{});
        if (report.find("Partial plaintext may be in") == std::string::npos) continue;
        ++named;
        EXPECT_EQ(folder.Names(), (Names{"a", "a.partial"})) << number << report << boxes;
    }
    EXPECT_GT(named, 0U);
}

TEST_F(Interruption, OfASystemCallByASignalOrHalfwayIsNotNoticed) {
    unsigned faults = 0;
    for (const Way& way : Ways) {
        for (const SystemCallFault fault : {SystemCallFault::Interrupted, SystemCallFault::Short}) {
            for (unsigned number = 1;; ++number) {
                PrepareFor(way);
                ArmSystemCallFault(fault, number);
                const std::string report = Run();
                if (!DisarmSystemCallFault()) break;
                ++faults;
                EXPECT_NE(report.find("-> "), std::string::npos) << number << report;
                ASSERT_TRUE(IsMended(way) && OutputIsComplete(way)) << number << report;
            }
        }
    }
    EXPECT_GT(faults, 100U);
}

TEST_F(Interruption, OfTheWritingBackIsToldByTheFlush) {
    for (const bool waits : {true, false}) {
        const OpenResult made = System().CreateExclusively(folder / (waits ? "w" : "s"));
        ASSERT_EQ(made.status, FsStatus::Ok);
        ArmSystemCallFault(SystemCallFault::LostWrite, 1);
        waits ? made.file->AwaitWriteback(0, 4096) : made.file->StartWriteback(0, 4096);
        EXPECT_TRUE(DisarmSystemCallFault());
        EXPECT_EQ(waits ? made.file->Flush() : made.file->FlushContent(), FsStatus::IoError);
        EXPECT_EQ(made.file->Flush(), FsStatus::Ok) << "it is told once";
    }
}

TEST_F(Interruption, FromOutsideUndoesAFileOrFinishesItsReplacement) {
    unsigned undone = 0;
    unsigned finished = 0;
    original = PatternBytes(2'200'000);
    for (const Way& way : Ways) {
        for (unsigned number = 1;; ++number) {
            PrepareFor(way);
            Disk().BeforeAny(number, [&] { running->StopAtOnce(); });
            const std::string report = Run();
            if (!Disk().AllMet()) break;
            Disk().Reset();
            const bool isDone = report.find("-> ") != std::string::npos;
            ++(isDone ? finished : undone);
            ASSERT_TRUE(NothingIsLost(way)) << number << report;
            const bool isThere = !way.elsewhere || other.Has("a");
            EXPECT_EQ(isThere && OutputIsComplete(way), isDone) << number << report;
            EXPECT_EQ(Unnamed({}), Names{}) << number << report;
            EXPECT_EQ(config.Names(), Names{}) << number << report;
        }
    }
    EXPECT_GT(undone, 50U);
    EXPECT_GT(finished, 20U);
}

TEST_F(Interruption, BySomebodyElseIsToldAndLosesNothing) {
    const auto newOutput = [this] {
        other.Remove("a");
        other.Write("a", "of somebody else");
    };
    const auto rewrite = [this] { // the time of the last change says nothing
        const auto time = std::filesystem::last_write_time(folder / "a");
        folder.Write("a", std::string(original.size(), 'x'));
        std::filesystem::last_write_time(folder / "a", time);
    };
    const auto save = [this] {
        folder.Write("new", "a new version");
        std::filesystem::rename(folder / "new", folder / "a");
    };
    const auto remove = [this] { folder.Remove("a"); };
    struct Case {
        Way way;
        FsCall call;
        unsigned number;
        std::function<void()> act;
        std::string remark;
        Names left; ///< of both folders together
    };
    constexpr const char* Appeared = "has appeared meanwhile";
    for (const Case& each :
         {Case{Ways[0], FsCall::FlushFolder, 2, remove, "has vanished", {"a.zr5-new"}},
          Case{Ways[0], FsCall::FlushFolder, 2, rewrite, "Write error.", {"a"}},
          Case{Ways[0], FsCall::Rename, 2, save, "has taken its name", {"a", "a.zr5-new"}},
          Case{Ways[1], FsCall::FlushFolder, 2, rewrite, "was changed", {"a", "a.zr5-new"}},
          Case{Ways[1], FsCall::Flush, 3, save, "was changed", {"a", "a.zr5-new"}},
          Case{Ways[5], FsCall::Open, 2, newOutput, Appeared, {"a"}},
          Case{Ways[2], FsCall::Create, 1, newOutput, Appeared, {"a"}},
          Case{Ways[2], FsCall::Rename, 1, newOutput, "Unable to open", {"a"}},
          Case{Ways[4], FsCall::Flush, 1, newOutput, Appeared, {"a"}},
          Case{Ways[5], FsCall::CopyAttributes, 1, newOutput, Appeared, {"a"}}}) {
        PrepareFor(each.way);
        Disk().Before(each.call, each.number, each.act);
        const std::string report = Run();
        EXPECT_NE(report.find(each.remark), std::string::npos) << report;
        Names left = folder.Names();
        left.merge(other.Names());
        EXPECT_EQ(left, each.left) << report;
        if (each.way.elsewhere) {
            EXPECT_EQ(other.Read("a"), "of somebody else") << report;
        }
        EXPECT_TRUE(left.count("a.zr5-new") == 0 || each.way.direction == Direction::Decrypt ||
                    Decrypted(folder / "a.zr5-new") == original);
        EXPECT_EQ(config.Names(), Names{});
    }
}

TEST_F(Interruption, OfTheJournalsDiskSpoilsOneFileOrEndsTheRun) {
    constexpr const char* GoesOn = "could not be written; another takes its place.";
    constexpr const char* Ends = "cannot be written, so the operation ends here.";
    original = "content";
    const std::string away = config.Path().substr(0, config.Path().size() - 1) + ".away";
    for (const bool forGood : {false, true}) {
        unsigned told = 0;
        for (unsigned number = 1;; ++number) {
            PrepareFor(Ways[0]);
            for (const char* name : {"b", "c", "d"})
                list.AddFile(folder.Write(name, original), folder / name);
            if (forGood) {
                Disk().Before(FsCall::Write, number,
                              [&] { std::filesystem::rename(config.Path(), away); });
                Disk().Fail(FsCall::Write, number);
            } else {
                ArmSystemCallFault(SystemCallFault::LostWrite, number);
            }
            const std::string report = Run();
            if (forGood ? !Disk().AllMet() : !DisarmSystemCallFault()) break;
            Disk().Reset();
            if (forGood) std::filesystem::rename(away, config.Path());
            const std::size_t at = report.find(forGood ? Ends : GoesOn);
            if (at != std::string::npos) {
                ++told;
                EXPECT_EQ(report.find(forGood ? "bytes   " : GoesOn, at + 1), std::string::npos)
                    << report;
            }
            const auto succeeded = std::ranges::count(report, '>'); // "-> 107 bytes"
            EXPECT_GE(succeeded, forGood ? 0 : 3) << report;
            Start();
            EXPECT_EQ(config.Names(), Names{}) << number << report << boxes;
        }
        EXPECT_GT(told, 1U) << forGood;
    }
}

TEST_F(Interruption, OfTheProcessAtAnySystemCallIsMendedByTheNextStart) {
    unsigned kills = 0;
    static_cast<void>(Sealed(original)); // so that no child has to derive the key
    for (const std::size_t length : {1U, 70'000U}) {
        original = PatternBytes(length);
        for (const Way& way : Ways) {
            bool killed = true;
            for (unsigned number = 1; killed; ++number) {
                PrepareFor(way);
                killed = KilledAtSystemCall(number, [&] { (void)Run(); });
                ASSERT_TRUE(NothingIsLost(way)) << "killed at system call " << number;
                Start();
                ASSERT_TRUE(IsMended(way)) << "killed at system call " << number << boxes;
                kills += killed ? 1 : 0;
            }
        }
    }
    EXPECT_GT(kills, 500U);
}

TEST_F(Interruption, OfTheMendingItselfIsMendedToo) {
    constexpr unsigned Stride = 29;      // through the run; every call of each mending
    static_cast<void>(Sealed(original)); // so that no child has to derive the key
    for (const Way& way : Ways) {
        bool killed = true;
        for (unsigned number = 1; killed; number += Stride) {
            bool mendingKilled = true;
            for (unsigned inMending = 1; mendingKilled; ++inMending) {
                PrepareFor(way);
                killed = KilledAtSystemCall(number, [&] { (void)Run(); });
                mendingKilled = KilledAtSystemCall(inMending, [&] { Start(); });
                Start();
                ASSERT_TRUE(IsMended(way)) << number << ", then " << inMending;
            }
        }
    }
}

} // namespace
} // namespace zr5::test
