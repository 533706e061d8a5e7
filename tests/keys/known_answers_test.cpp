#include "keys/classification.h"
#include "keys/normalise.h"
#include "keys/typed_key.h"
#include "libs/cipher/cipher_engine.h"
#include "libs/system/random.h"
#include "support/fakes.h"
#include "support/md5_text.h"
#include "support/temporary_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <sstream>
#include <stdexcept>

// The files of tests/data: what was encrypted once opens for good, with the same key typed or
// read from the same keyfile, and of every class of damage comes out what can. What the program
// encrypts, the second implementation there opens.

namespace zr5::test {
namespace {

const std::filesystem::path Data = KNOWN_ANSWERS;

std::string Stored(const std::string& name) {
    std::ifstream file(Data / name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The canonical key that the table calls so.
SecretBytes KnownKey(std::string_view name) {
    if (name == "keyfile") {
        SecretBytes bytes = SecretBytes::CopyOf(Stored("keyfile.key"));
        SubstituteInnerNuls(bytes);
        return NormaliseKey(bytes.text());
    }
    if (name == "typed") return NormaliseKey(TypedKeyBytes(u"Grüße aus Köln, 2026!")->text());
    if (name == "other") return NormaliseKey(TypedKeyBytes(u"Grüße aus Köln, 2027!")->text());
    throw std::invalid_argument("no such key");
}

/// As the table spells it.
std::string Details(const Damage& damage) {
    std::ostringstream text;
    for (const ByteRange& lost : damage.lost)
        text << ",L" << lost.offset + 1 << '-' << lost.offset + lost.lengthBytes;
    if (damage.missingPlainBytes != 0) text << ",missing:" << damage.missingPlainBytes;
    if (damage.wrongEnd) {
        const std::int64_t surplus = damage.wrongEnd->surplusBytes;
        text << (damage.wrongEnd->side == Side::Front ? ",front:" : ",end:")
             << (surplus > 0 ? "+" : "") << surplus;
    }
    return text.str().empty() ? "-" : text.str().substr(1);
}

class KnownAnswers : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(engine->allocate_buffers()); }

    void ExpectRow(const std::string& name, const std::string& key, int code,
                   const std::string& result) {
        folder.Empty();
        const std::string in = folder.Write("in", Stored(name));
        folder.Write("out", "before");
        Damage damage;
        engine->operation_initialization(KnownKey(key).text(), Direction::Decrypt);
        const EngineResult ended = engine->decrypt_file(in, folder / "out", {.damage = &damage});
        EXPECT_EQ(static_cast<int>(ended), code);
        const char* made = code == 0 ? "out" : "out.partial";
        EXPECT_EQ(folder.Read("out") == "before", code != 0);
        EXPECT_EQ(folder.Has("out.partial"), IsPartial(ended));
        std::ostringstream text;
        const bool hasResult = code == 0 || IsPartial(ended);
        if (hasResult) {
            const std::string plain = folder.Read(made);
            text << plain.size() << ' ' << Md5Text(plain) << ' ' << Details(damage);
        }
        EXPECT_EQ(hasResult ? text.str() : "0 - -", result);
        engine->operation_initialization(KnownKey(key).text(), Direction::Decrypt);
        EXPECT_EQ(engine->check_file(in, {}), ended);
        EXPECT_EQ(folder.Names().size(), IsPartial(ended) ? 3U : 2U);
    }

    TemporaryFolder folder;
    std::unique_ptr<FileSystem> disk = MakeSystemFileSystem();
    StoppedClock clock;
    SystemRandom random;
    std::unique_ptr<CipherEngine> engine = MakeCipherEngine(*disk, clock, random);
};

TEST_F(KnownAnswers, OpenAsTheTableSays) {
    std::istringstream table(Stored("known_answers.txt"));
    std::set<std::string> named;
    for (std::string line; std::getline(table, line);) {
        if (line.empty() || line.starts_with('#')) continue;
        SCOPED_TRACE(line);
        std::istringstream row(line);
        std::string name, key, bytes, digest, details;
        int code = 1;
        ASSERT_TRUE(row >> name >> key >> code >> bytes >> digest >> details);
        named.insert(name);
        ExpectRow(name, key, code, bytes + ' ' + digest + ' ' + details);
    }
    for (const auto& file : std::filesystem::directory_iterator(Data)) {
        const std::string name = file.path().filename();
        EXPECT_EQ(named.contains(name), name.ends_with(".zr5")) << name;
    }
}

TEST_F(KnownAnswers, AreWhatASecondImplementationMakesOfThisOnesFiles) {
    for (const std::size_t bytes : {1U, 65536U, 65537U, 2'000'000U}) {
        const std::string plain = folder.Write(std::to_string(bytes), PatternBytes(bytes));
        engine->operation_initialization(KnownKey("typed").text(), Direction::Encrypt);
        ASSERT_EQ(engine->encrypt_file(plain, plain + ".zr5", {}), EngineResult::Success);
    }
    const std::string command = "/usr/bin/python3 '" +
                                (Data / "second_implementation.py").string() + "' check '" +
                                (folder / ".") + "' 'Grüße aus Köln, 2026!'";
    EXPECT_EQ(std::system(command.c_str()), 0); // NOLINT(concurrency-mt-unsafe): no threads
}

} // namespace
} // namespace zr5::test
