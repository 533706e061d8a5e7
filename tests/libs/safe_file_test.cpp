#include "libs/safe_file.h"

#include "support/faulty_file_system.h"
#include "support/temporary_folder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace zr5 {
namespace {

using test::FaultyFileSystem;
using test::FsCall;

class SafeFile : public testing::Test {
  protected:
    FsStatus Write(IfThere ifThere) {
        return WriteSafely(disk, random, folder / "f", std::as_bytes(std::span(content)), ifThere);
    }
    const std::string content = test::PatternBytes(64);
    test::TemporaryFolder folder;
    std::unique_ptr<FileSystem> system = MakeSystemFileSystem();
    FaultyFileSystem disk{*system};
    SystemRandom random;
};

TEST_F(SafeFile, IsItsOwnersOnlyAndReplacesNothingUnlessItMay) {
    EXPECT_EQ(Write(IfThere::Refuse), FsStatus::Ok);
    EXPECT_EQ(folder.Read("f"), content);
    EXPECT_EQ(std::filesystem::status(folder / "f").permissions(), std::filesystem::perms(0600));
    folder.Write("f", "other");
    EXPECT_EQ(Write(IfThere::Refuse), FsStatus::AlreadyExists);
    disk.Before(FsCall::Flush, 1, [&] { folder.Remove("f"); });
    EXPECT_EQ(Write(IfThere::Replace), FsStatus::Ok) << "a file that vanished meanwhile";
    folder.Remove("f");
    disk.Before(FsCall::Rename, 1, [&] { folder.Write("f", "newcomer"); });
    EXPECT_NE(Write(IfThere::Refuse), FsStatus::Ok);
    EXPECT_EQ(folder.Read("f"), "newcomer");
    EXPECT_EQ(folder.Names(), std::set<std::string>{"f"});
}

TEST_F(SafeFile, LeavesTheOldFileOrNothingWhicheverCallFails) {
    for (const bool replaces : {false, true}) {
        for (unsigned call = 1;; ++call) {
            folder.Empty();
            if (replaces) folder.Write("f", "old");
            disk.Reset();
            disk.FailAny(call, FsStatus::NoSpace);
            const FsStatus status = Write(IfThere::Replace);
            if (!disk.AllMet()) break;
            if (status == FsStatus::Ok) continue; // a call without consequence
            const bool named = disk.Calls().back() == FsCall::FlushFolder;
            EXPECT_EQ(folder.Has("f") ? folder.Read("f") : "",
                      !replaces ? "" : (named ? content : "old"))
                << call;
            EXPECT_EQ(folder.Names().size(), replaces ? 1U : 0U) << call;
        }
    }
    disk.Reset();
    disk.Fail(FsCall::Write, 1, FsStatus::NoSpace);
    EXPECT_EQ(Write(IfThere::Replace), FsStatus::NoSpace);
}

} // namespace
} // namespace zr5
