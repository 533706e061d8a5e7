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

TEST_F(EngineCodes, DecryptionKeepsWhatCouldBeRecoveredWhateverFails) {
    const std::string plain = PatternBytes(2 * MiB + 100);
    folder.Write("in", Sealed(plain));
    folder.Write("out", "what stood there before");
    std::string firstLost = plain;
    firstLost.replace(0, PlainBlockBytes, PlainBlockBytes, '\0');
    std::string secondLost = plain;
    secondLost.replace(MiB, MiB, MiB, '\0');
    const std::string none;
    using enum FsStatus;
    const struct {
        FsCall kind;
        unsigned first, last; ///< of the calls that fail
        FsStatus status;
        EngineResult code;
        std::string kept;
    } cases[] = {
        {FsCall::Read, 1, 1, IoError, CorruptEndPartial, plain}, // of the header in front
        {FsCall::Read, 2, 2, IoError, CorruptEndPartial, plain}, // at the end
        {FsCall::Read, 1, 2, IoError, ReadError, none},
        {FsCall::Read, 3, 4, IoError, ReadErrorPartial, firstLost}, // a piece and its first block
        {FsCall::Read, 3, 20, IoError, ReadError, none}, // and all its blocks, and a header
        {FsCall::Read, 4, 21, IoError, ReadErrorPartial, plain.substr(0, MiB)},
        {FsCall::Read, 4, 20, IoError, ReadErrorPartial, secondLost}, // a header can be read
        {FsCall::Read, 5, 7, IoError, ReadErrorPartial, plain.substr(0, 2 * MiB)},
        {FsCall::Write, 1, 1, IoError, WriteError, none},
        {FsCall::Write, 2, 2, IoError, WriteErrorPartial, plain.substr(0, MiB)},
        {FsCall::Write, 3, 3, NotPermitted, WriteErrorPartial, plain.substr(0, 2 * MiB)},
        {FsCall::Write, 3, 3, NoSpace, DiskFull, none},
        {FsCall::Reserve, 1, 1, NoSpace, DiskFull, none},
        {FsCall::Flush, 1, 1, IoError, WriteError, none},
        {FsCall::Flush, 1, 1, NoSpace, DiskFull, none}};
    for (const auto& one : cases) {
        SCOPED_TRACE(testing::Message() << "from call " << one.first << " to " << one.last);
        Disk().Reset();
        for (unsigned call = one.first; call <= one.last; ++call)
            Disk().Fail(one.kind, call, one.status);
        EXPECT_EQ(Decrypt("in", "out"), one.code);
        EXPECT_TRUE(Disk().AllMet());
        EXPECT_TRUE(!folder.Has("out.partial") ? one.kept.empty()
                                               : folder.Read("out.partial") == one.kept);
        EXPECT_EQ(folder.Read("out"), "what stood there before");
        folder.Remove("out.partial");
        EXPECT_EQ(folder.Names(), (Names{"in", "out"}));
    }
}

TEST_F(EngineCodes, ASalvageTakesAFreeName) {
    std::string cut = Sealed("content");
    cut.pop_back();
    folder.Write("in", cut);
    folder.Write("out.partial", "somebody's");
    Disk().Before(FsCall::Rename, 1, [&] { folder.Write("out.partial-2", "somebody else's"); });
    EXPECT_EQ(Decrypt("in", "out"), CorruptEndPartial);
    EXPECT_EQ(folder.Read("out.partial-3"), "content");
    EXPECT_EQ(folder.Names(), (Names{"in", "out.partial", "out.partial-2", "out.partial-3"}));
    const std::string longest(255, 'n');
    EXPECT_EQ(Decrypt("in", longest), CorruptEndPartial);
    EXPECT_EQ(folder.Read(longest.substr(0, 247) + ".partial"), "content");
}

TEST_F(EngineCodes, ALostBeginningIsAGapThatTakesNoRoom) {
    const std::string plain = PatternBytes(40 * MiB);
    folder.Write("in", Sealed(plain).substr(40 * MiB - 60'000));
    EXPECT_EQ(Decrypt("in", "out"), CorruptEndPartial);
    const std::string got = folder.Read("out.partial");
    ASSERT_EQ(got.size(), plain.size());
    const std::size_t lost = plain.size() - PlainBlockBytes;
    EXPECT_TRUE(got == std::string(lost, '\0') + plain.substr(lost));
    struct stat raw {};
    ASSERT_EQ(stat((folder / "out.partial").c_str(), &raw), 0);
    EXPECT_LT(static_cast<std::uint64_t>(raw.st_blocks) * 512, 2 * MiB);
}

TEST_F(EngineCodes, AShortReadIsAReadError) {
    folder.Write("plain", PatternBytes(2 * MiB));
    Disk().EndReadEarly(2, 1000);
    EXPECT_EQ(Encrypt("plain", "out"), ReadError);
    EXPECT_FALSE(folder.Has("out"));
}

} // namespace
} // namespace zr5::test
