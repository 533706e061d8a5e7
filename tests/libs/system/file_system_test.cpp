#include "libs/cipher/safe_file.h"
#include "libs/system/file_system.h"

#include "libs/filekit/kit_fixture.h"

#include <filesystem>

namespace zr5::test {
namespace {

namespace fs = std::filesystem;

using SystemFiles = KitTest;

TEST_F(SystemFiles, RenamingNeverReplacesWhateverHoldsTheName) {
    folder.Write("file", "kept");
    folder.MakeSpecials("file");
    folder.Write("from", "moved");
    const auto names = folder.Names();
    for (const char* name : {"file", "folder", "link", "dangling", "pipe"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(system->RenameWithoutReplacing(folder / "from", folder / name),
                  FsStatus::AlreadyExists);
        EXPECT_EQ(folder.Names(), names);
    }
    EXPECT_EQ(folder.Read("file"), "kept");
    EXPECT_EQ(system->RenameWithoutReplacing(folder / "from", folder / "free"), FsStatus::Ok);
    EXPECT_EQ(folder.Read("free"), "moved");
    EXPECT_EQ(system->RenameWithoutReplacing(folder / "from", folder / "x"), FsStatus::NotFound);
}

TEST_F(SystemFiles, OpenOnlyRegularFilesAndMakeOnlyNewOnes) {
    folder.Write("file", "content");
    folder.MakeSpecials("file");
    for (const auto& [name, kind] : {std::pair{"file", FileKind::Regular},
                                     {"folder", FileKind::Folder},
                                     {"link", FileKind::Link},
                                     {"pipe", FileKind::Special}}) {
        SCOPED_TRACE(name);
        const std::string path = folder / name;
        const auto opened = kind == FileKind::Regular ? FsStatus::Ok : FsStatus::NotRegularFile;
        EXPECT_EQ(system->OpenForReading(path).status, opened);
        EXPECT_EQ(system->OpenForOverwriting(path).status, opened);
        EXPECT_EQ(system->CreateExclusively(path).status, FsStatus::AlreadyExists);
        ASSERT_TRUE(system->Info(path));
        EXPECT_EQ(system->Info(path)->kind, kind);
    }
    EXPECT_EQ(folder.Read("file"), "content") << "opening for overwriting cuts nothing off";
    EXPECT_EQ(system->OpenForReading(folder / "none").status, FsStatus::NotFound);
    EXPECT_FALSE(system->Info(folder / "none"));
}

TEST_F(SystemFiles, HaveOneIdentityUnderAllTheirNames) {
    folder.Write("file", "");
    folder.Write("other", "");
    fs::create_directory(folder / "below");
    fs::create_hard_link(folder / "file", folder / "hard");
    fs::create_symlink(folder / "file", folder / "soft");
    fs::create_directory_symlink(folder.Path(), folder / "below/up");
    struct Case {
        std::string a, b;
        bool same;
    };
    const auto path = [&](const char* name) { return folder / name; };
    for (const Case& entry :
         {Case{path("file"), path("file"), true}, Case{path("file"), path("hard"), true},
          Case{path("file"), path("soft"), true},
          Case{path("file"), path("./below/..//file"), true},
          Case{path("file"), path("below/up/file"), true}, Case{path("file"), path("other"), false},
          Case{path("file"), path("FILE"), false}, Case{path("file"), path("none"), false},
          Case{path("none"), path("./none"), true}, // neither is there
          Case{path("none"), path("nine"), false}, Case{"C:\\Text\\a.TXT", "c:\\text\\A.txt", true},
          Case{"C:\\Text\\\xC3\x84.txt", "c:\\text\\\xC3\xA4.txt", true},
          Case{"C:\\a.txt", "D:\\a.txt", false}, Case{"\\\\Server\\a", "\\\\SERVER\\A", true},
          Case{"C:\\a\xFF", "c:\\A\xFF", true}, // not UTF-8
          Case{"C:\\a", path("file"), false}}) {
        SCOPED_TRACE(entry.a + " and " + entry.b);
        EXPECT_EQ(SameFile(*system, entry.a, entry.b), entry.same);
        EXPECT_EQ(SameFile(*system, entry.b, entry.a), entry.same);
    }
}

class SafeFile : public KitTest {
  protected:
    FsStatus Write(IfThere ifThere) {
        return WriteSafely(disk, random, folder / "f", std::as_bytes(std::span(content)), ifThere);
    }
    const std::string content = PatternBytes(64);
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
} // namespace zr5::test
