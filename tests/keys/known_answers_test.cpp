#include "keys/classification.h"
#include "keys/normalise.h"
#include "keys/typed_key.h"
#include "libs/cipher/cipher_engine.h"
#include "libs/cipher/zr5_format.h"
#include "libs/system/random.h"
#include "support/fakes.h"
#include "support/md5_text.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <sstream>
#include <stdexcept>

// The files of tests/data: what was encrypted once opens for good, with the same key typed or
// read from the same keyfile, and the format does not change unnoticed.

namespace zr5::test {
namespace {

const std::filesystem::path Data = KNOWN_ANSWERS;

std::string Stored(const std::string& name) {
    std::ifstream file(Data / name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

/// So many bytes of "1\n2\n3\n…", as `seq 1 40000 | head -c BYTES` prints them.
std::string CountedLines(std::size_t bytes) {
    std::string lines;
    for (int i = 1; lines.size() < bytes; ++i)
        lines += std::to_string(i) + "\n";
    return lines.substr(0, bytes);
}

/// The salts are known by their lengths; everything else is a name of a temporary file.
class KnownSalts final : public RandomSource {
  public:
    std::string fileSalt; ///< is filled up with dots
    void Fill(std::span<std::byte> into) override {
        std::ranges::fill(into, std::byte{'.'});
        const std::string text = into.size() == RunSaltBytes ? "zr5 known answer" : fileSalt;
        const auto bytes = std::as_bytes(std::span(text));
        std::ranges::copy(bytes.first(std::min(bytes.size(), into.size())), into.begin());
    }
};

/// The canonical key that the table calls so.
SecretBytes KnownKey(std::string_view name) {
    if (name == "keyfile") {
        SecretBytes bytes = SecretBytes::CopyOf(Stored("keyfile.key"));
        SubstituteInnerNuls(bytes);
        return NormaliseKey(bytes.text());
    }
    if (name == "typed") return NormaliseKey(TypedKeyBytes(u"Grüße aus Köln, 2026!")->text());
    if (name == "other") return NormaliseKey(TypedKeyBytes(u"Grüße aus Köln, 2027!")->text());
    if (name == "example") return NormaliseKey("correct horse battery staple");
    throw std::invalid_argument("no such key");
}

TEST(KnownAnswers, OpenAsTheTableSaysAndTheWholeOnesAreMadeAgainToTheByte) {
    const TemporaryFolder folder;
    const auto disk = MakeSystemFileSystem();
    StoppedClock clock;
    KnownSalts random;
    const auto engine = MakeCipherEngine(*disk, clock, random);
    ASSERT_NE(engine->allocate_buffers(), 0);
    std::istringstream table(Stored("known_answers.txt"));
    std::set<std::string> named;
    for (std::string line; std::getline(table, line);) {
        if (line.empty() || line.starts_with('#')) continue;
        SCOPED_TRACE(line);
        std::istringstream row(line);
        std::string name, keyName, digest;
        int code = 1;
        std::size_t bytes = 0;
        ASSERT_TRUE(row >> name >> keyName >> code >> bytes >> digest);
        named.insert(name);
        const SecretBytes key = KnownKey(keyName);
        const std::string sealed = Stored(name);
        folder.Empty();
        folder.Write("in", sealed);
        engine->operation_initialization(key.text(), Direction::Decrypt);
        EXPECT_EQ(static_cast<int>(engine->decrypt_file(folder / "in", folder / "out", {})), code);
        const std::string out = folder.Has("out") ? folder.Read("out") : "";
        EXPECT_EQ(out.size(), bytes);
        EXPECT_EQ(folder.Has("out") ? Md5Text(out) : "-", digest);
        if (code != 0 || keyName == "example") continue;
        random.fileSalt = name.substr(0, name.find('.'));
        folder.Write("plain", CountedLines(bytes));
        engine->operation_initialization(key.text(), Direction::Encrypt);
        EXPECT_EQ(engine->encrypt_file(folder / "plain", folder / "again", {}),
                  EngineResult::Success);
        EXPECT_TRUE(folder.Read("again") == sealed) << "another format";
    }
    for (const auto& file : std::filesystem::directory_iterator(Data)) {
        const std::string name = file.path().filename();
        EXPECT_EQ(named.contains(name), name.ends_with(".zr5")) << name;
    }
}

} // namespace
} // namespace zr5::test
