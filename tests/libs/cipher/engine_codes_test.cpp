#include "libs/cipher/engine_fixture.h"

#include <chrono>
#include <filesystem>
#include <set>
#include <sys/stat.h>

// Every result of the engine, reached by what causes it, and the disk after it.

namespace zr5::test {
namespace {

using Names = std::set<std::string>;
using enum EngineResult;

constexpr std::size_t MiB = std::size_t{1} << 20U;

class EngineCodes : public EngineTest {
  protected:
    /// Both directions into a new output leave nothing but the input, which is as it was.
    void ExpectBothFail(std::string_view input, std::string_view output, EngineResult code) {
        SCOPED_TRACE(testing::Message() << input << " to " << output);
        const Names before = folder.Names();
        EXPECT_EQ(Encrypt(input, output), code);
        EXPECT_EQ(Decrypt(input, output), code);
        EXPECT_EQ(folder.Names(), before);
    }
};

TEST_F(EngineCodes, NothingWorksWithoutInitialisation) {
    folder.Write("in", Sealed("content"));
    const std::string in = folder / "in";
    const std::string out = folder / "out";
    Engine().operation_initialization({}, Direction::Encrypt);
    EXPECT_EQ(Engine().encrypt_file(in, out, {}), NotInitialised) << "no key";
    Engine().operation_initialization(Key, Direction::Decrypt);
    EXPECT_EQ(Engine().encrypt_file(in, out, {}), NotInitialised) << "other direction";
    Engine().operation_initialization(Key, Direction::Encrypt);
    EXPECT_EQ(Engine().decrypt_file(in, out, {}), NotInitialised) << "other direction";
    EXPECT_EQ(Decrypt("in", "back"), Success);
    EXPECT_EQ(Engine().decrypt_file(in, out, {}), NotInitialised) << "second file";
    EXPECT_EQ(folder.Names(), (Names{"in", "back"}));

    Engine().operation_initialization(Key, Direction::Decrypt);
    Engine().deallocate_buffers();
    EXPECT_EQ(Engine().decrypt_file(in, out, {}), NotInitialised) << "buffers given back";
    Engine().operation_initialization(Key, Direction::Decrypt);
    EXPECT_EQ(Engine().decrypt_file(in, out, {}), NotInitialised) << "no buffers";
    ASSERT_TRUE(Engine().allocate_buffers());
    EXPECT_EQ(Decrypt("in", "back"), Success);
}

TEST_F(EngineCodes, AnInputThatCannotBeReadIsSaid) {
    folder.Write("file", "content");
    folder.MakeSpecials("file");
    for (const char* input : {"missing", "missing/below", "file/below"})
        ExpectBothFail(input, "out", InputNotFound);
    for (const char* input : {"folder", "link", "dangling", "pipe"}) // not waiting for a writer
        ExpectBothFail(input, "out", InputNotOpened);
    Disk().Fail(FsCall::Open, 1, FsStatus::NotPermitted);
    EXPECT_EQ(Encrypt("file", "out"), InputNotOpened);
}

TEST_F(EngineCodes, AnOutputThatCannotBeMadeIsSaid) {
    folder.Write("file", Sealed("content"));
    folder.Write("other", "precious");
    folder.MakeSpecials("other");
    for (const char* output : {"folder", "link", "dangling", "pipe", "missing/below", "other/x"})
        ExpectBothFail("file", output, OutputNotOpened);
    EXPECT_EQ(folder.Read("other"), "precious");
    Disk().Fail(FsCall::Create, 1, FsStatus::NotPermitted);
    EXPECT_EQ(Encrypt("file", "out"), OutputNotOpened);
    EXPECT_FALSE(folder.Has("out"));
    Disk().Reset();
    Disk().Fail(FsCall::Open, 2, FsStatus::NotPermitted);
    EXPECT_EQ(Decrypt("file", "other"), OutputNotOpened);
    EXPECT_EQ(folder.Read("other"), "precious");
}

TEST_F(EngineCodes, TheInputIsNeverTheOutputNorEmpty) {
    const std::string sealed = Sealed("content");
    folder.Write("file", sealed);
    std::filesystem::create_hard_link(folder / "file", folder / "hard");
    std::filesystem::create_symlink(folder / "file", folder / "soft");
    std::filesystem::create_directory(folder / "below");
    for (const char* output : {"file", "./file", "below/../file", "/file", "hard", "soft"})
        ExpectBothFail("file", output, OutputNotOpened);
    EXPECT_EQ(folder.Read("file"), sealed);
    EXPECT_EQ(std::filesystem::hard_link_count(folder / "file"), 2U);
    folder.Write("empty", "");
    EXPECT_EQ(Encrypt("empty", "out"), ReadError);
    EXPECT_EQ(Decrypt("empty", "out"), WrongKeyOrCorrupt);
    EXPECT_FALSE(folder.Has("out"));
}

TEST_F(EngineCodes, AnOutputThatAppearsMeanwhileIsNotReplaced) {
    folder.Write("in", Sealed("content"));
    for (const bool encrypts : {true, false}) {
        Disk().Reset();
        Disk().Before(FsCall::Flush, 1, [&] { folder.Write("out", "of somebody else"); });
        EXPECT_EQ(encrypts ? Encrypt("in", "out") : Decrypt("in", "out"), OutputNotOpened);
        EXPECT_TRUE(Disk().AllMet());
        EXPECT_EQ(folder.Read("out"), "of somebody else");
        EXPECT_EQ(folder.Names(), (Names{"in", "out"}));
        folder.Remove("out");
    }
}

TEST_F(EngineCodes, AnInputThatChangesMeanwhileIsNotEncrypted) {
    const std::string plain = PatternBytes(MiB + 100);
    for (const std::string& changed :
         {plain + "more", plain.substr(0, MiB), std::string(), PatternBytes(MiB + 100, 2)}) {
        SCOPED_TRACE(changed.size());
        folder.Write("in", plain);
        std::filesystem::last_write_time(
            folder / "in", std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
        Disk().Reset();
        Disk().Before(FsCall::Write, 1, [&] { folder.Write("in", changed); });
        EXPECT_EQ(Encrypt("in", "out"), ReadError);
        EXPECT_EQ(folder.Names(), Names{"in"});
    }
}

TEST_F(EngineCodes, DecryptionKeepsWhatWasRecoveredBeforeAFailure) {
    const std::string plain = PatternBytes(2 * MiB + 100);
    const std::string sealed = Sealed(plain);
    folder.Write("in", sealed);
    using enum FsStatus;
    const std::tuple<FsCall, unsigned, FsStatus, EngineResult, std::size_t> cases[] = {
        {FsCall::Read, 2, IoError, ReadError, 0}, // the first after the header
        {FsCall::Read, 3, IoError, ReadErrorPartial, MiB},
        {FsCall::Read, 4, IoError, ReadErrorPartial, 2 * MiB},
        {FsCall::Write, 1, IoError, WriteError, 0},
        {FsCall::Write, 2, IoError, WriteErrorPartial, MiB},
        {FsCall::Write, 3, NotPermitted, WriteErrorPartial, 2 * MiB},
        {FsCall::Write, 3, NoSpace, DiskFull, 0},
        {FsCall::Reserve, 1, NoSpace, DiskFull, 0},
        {FsCall::Flush, 1, IoError, WriteError, 0},
        {FsCall::Flush, 1, NoSpace, DiskFull, 0}};
    for (const auto& [kind, number, status, code, keptBytes] : cases) {
        SCOPED_TRACE(testing::Message() << "call " << number);
        Disk().Reset();
        Disk().Fail(kind, number, status);
        EXPECT_EQ(Decrypt("in", "out"), code);
        EXPECT_TRUE(Disk().AllMet());
        EXPECT_EQ(folder.Has("out"), keptBytes != 0);
        if (keptBytes != 0) {
            EXPECT_TRUE(folder.Read("out") == plain.substr(0, keptBytes));
            folder.Remove("out");
        }
        EXPECT_EQ(folder.Names(), Names{"in"});
        EXPECT_TRUE(folder.Read("in") == sealed);
    }
}

TEST_F(EngineCodes, ShortReadsAreReadErrors) {
    folder.Write("plain", PatternBytes(2 * MiB));
    folder.Write("sealed", Sealed(PatternBytes(2 * MiB)));
    Disk().EndReadEarly(2, 1000);
    EXPECT_EQ(Encrypt("plain", "out"), ReadError);
    Disk().Reset();
    Disk().EndReadEarly(1, 10);
    EXPECT_EQ(Decrypt("sealed", "out"), ReadError) << "inside the header";
    EXPECT_FALSE(folder.Has("out"));
    Disk().Reset();
    Disk().EndReadEarly(3, 70'000);
    EXPECT_EQ(Decrypt("sealed", "out"), ReadErrorPartial);
    EXPECT_EQ(folder.Read("out").size(), MiB + PlainBlockBytes)
        << "a block that came whole is kept";
}

} // namespace
} // namespace zr5::test
