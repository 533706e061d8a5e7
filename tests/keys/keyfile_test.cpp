// Keys that come from keyfiles, and the random ones that new keyfiles get.

#include "keys/classification.h"
#include "keys/keyfile_choice.h"
#include "keys/normalise.h"
#include "keys/random_key.h"
#include "libs/filekit/randomness.h"
#include "support/fixtures.h"
#include "support/key_windows.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <random>

namespace zr5::test {
namespace {

constexpr const char* GetTitle = "Get encryption key from keyfile";
constexpr const char* NewTitle = "Specify new keyfile";
constexpr std::string_view SixteenBytes = "Sixteen bytes...";

/// 64 characters as random keys have them, some of them no text.
std::string RandomCharacters() {
    std::string key;
    for (unsigned i = 0; i < KeyfileBytes; ++i)
        key += static_cast<char>(33 + i * 37 % 223);
    return key;
}

class KeyfileChoiceTest : public KitTest {
  protected:
    KeyfileChoiceTest() { key.rawKeyEntry = SecretBytes::CopyOf("typed before"); }
    void Run(KeyfileMode mode, Direction direction = Direction::Encrypt) {
        GetKeyFromKeyfile(mode, direction, machine, {inspector, collector}, key);
    }
    /// Takes an existing keyfile, uninspected.
    void Take(const std::string& path) {
        user.ExpectFile(GetTitle, path).Expect(Question("Inspect the key?", path), Answer::No);
        Run(KeyfileMode::Existing);
    }
    void RunUnsuitably(KeyfileMode mode, const std::string& path) {
        user.Expect(Notice(path + " is not a suitable keyfile.", "Unsuitable keyfile"));
        Run(mode);
        ExpectNoKey(key);
    }
    void Refuse(const std::string& path) {
        user.ExpectFile(GetTitle, path);
        RunUnsuitably(KeyfileMode::Existing, path);
    }
    void GiveUp(const char* where, KeyfileMode mode, Direction direction = Direction::Encrypt) {
        SCOPED_TRACE(where);
        Run(mode, direction);
        EXPECT_TRUE(key.keyChoiceAbandoned);
        EXPECT_EQ(key.rawKeyEntry.text(), "typed before");
        ExpectUntouchedKeyfileKey(key);
        key.keyChoiceAbandoned = false;
    }

    FakeEngine engine;
    Machine machine{user, disk, engine, *kit, clock, random, "/usr/bin/zr5e", "/"};
    FakeInspector inspector;
    FakeCollector collector;
    CurrentKey key = KeyfileKey();
    const MessageBox repeat{"Attempt at creating random key unsuccessful.  Please repeat.",
                            "Key not sufficiently random", BoxIcon::None, BoxButtons::RetryCancel,
                            Answer::Retry};
};

TEST_F(KeyfileChoiceTest, TakesTheFirst64BytesOfAKeyfileOfAnyLength) {
    const std::string random64 = RandomCharacters();
    const std::tuple<std::string, std::string, KeySource> cases[] = {
        {std::string(SixteenBytes), "SIXTEENBYTES...", KeySource::None}, // one blank too many
        {std::string(SixteenBytes) + "!", "SIXTEENBYTES...!", KeySource::TextKeyfile},
        {std::string(64, 'a') + "b", std::string(64, 'A'), KeySource::TextKeyfile},
        {random64, std::string(NormaliseKey(random64).text()), KeySource::ApparentlyRandomKeyfile},
        {std::string(16, '\x7F'), std::string(16, '\x7F'), KeySource::NonRandomNonTextKeyfile},
        {"", "", KeySource::None},
        {std::string(64, '\0'), "", KeySource::None},
        {std::string(49, '\n') + "only 15 count ..", "", KeySource::None}};
    for (const auto& [content, keyText, source] : cases) {
        const std::string path = folder.Write("key", content);
        if (source != KeySource::None) {
            Take(path);
            EXPECT_EQ(key.keyText.text(), keyText);
            EXPECT_EQ(key.Source(), source) << keyText;
            EXPECT_EQ(key.keyfilePath, path);
            EXPECT_TRUE(key.rawKeyEntry.empty()) << "never shown in clear";
        } else {
            Refuse(path);
        }
    }
    const std::string huge = folder.Write("huge", std::string(64, 'a'));
    std::filesystem::resize_file(huge, std::uintmax_t{5} << 30U);
    Take(huge);
    EXPECT_EQ(key.keyText.size(), 64U);
}

TEST_F(KeyfileChoiceTest, MakesAnInnerNulACharacterOfTheKey) {
    const std::string content{"A\0BCDEFGHIJKLMNOPQ", 18};
    Take(folder.Write("key", content));
    EXPECT_EQ(key.keyText.text(), "A~BCDEFGHIJKLMNOPQ");
    EXPECT_EQ(key.checksum, 7173);
    Take(folder.Write("key", RandomCharacters().substr(0, 20) + std::string(43, '\0') + "\x90"));
    EXPECT_EQ(key.Source(), KeySource::NonRandomNonTextKeyfile) << "the substitutes all differ";
    SecretBytes buffer(KeyfileBytes);
    buffer.bytes()[63] = std::byte{1};
    SubstituteInnerNuls(buffer);
    EXPECT_EQ(buffer.bytes()[0], std::byte{127});
    EXPECT_EQ(buffer.bytes()[62], std::byte{65});
}

TEST_F(KeyfileChoiceTest, RefusesWhatCannotBeReadAndFollowsLinks) {
    const std::string keyfile = folder.Write("key", std::string(16, 'k'));
    folder.MakeSpecials("key");
    for (const char* name : {"folder", "pipe", "dangling"})
        Refuse(folder / name);
    disk.Fail(FsCall::Open, 1, FsStatus::NotPermitted);
    Refuse(keyfile);
    disk.Fail(FsCall::Read, 1); // after enough bytes for a key
    Refuse(keyfile);
    Take(folder / "link");
    EXPECT_EQ(key.keyfilePath, folder / "link");
    disk.Before(FsCall::Open, 1, [&] { folder.Remove("key"); });
    Refuse(keyfile); // gone between choice and reading
}

TEST_F(KeyfileChoiceTest, ShowsTheKeyBeforeItIsWrittenAndReadsItBack) {
    const std::string made = RandomCharacters();
    collector.keys = {std::string(64, 'a'), made.substr(0, 63), made};
    inspector.onInspect = [&] { EXPECT_FALSE(folder.Has("new")); };
    user.ExpectFile(GetTitle, folder / "new")
        .Expect(Question("Do you wish to create " + folder / "new" + " as a new random keyfile?",
                         "Keyfile does not exist."),
                Answer::Yes)
        .Expect(repeat, Answer::Retry)
        .Expect(repeat, Answer::Retry)
        .Expect(Question("Inspect the key?", folder / "new"), Answer::Yes);
    Run(KeyfileMode::Existing);
    EXPECT_EQ(inspector.classLine, "New random key in file");
    EXPECT_EQ(inspector.fileLine, folder / "new");
    EXPECT_EQ(inspector.buffer, made);
    EXPECT_TRUE(inspector.isNewRandomKey && inspector.isApparentlyRandom && !inspector.isTextKey);
    EXPECT_EQ(folder.Read("new"), made);
    EXPECT_EQ(std::filesystem::status(folder / "new").permissions(), std::filesystem::perms(0600));
    EXPECT_EQ(key.Source(), KeySource::NewRandomKeyfile);
    const std::int16_t checksum = key.checksum;
    Take(folder / "new");
    EXPECT_EQ(key.Source(), KeySource::ApparentlyRandomKeyfile);
    EXPECT_EQ(key.checksum, checksum);
}

TEST_F(KeyfileChoiceTest, NeverKeepsANewKeyThatIsNotOnTheDisk) {
    const std::string path = folder.Write("new", "old content");
    const auto create = [&] {
        collector.keys = {RandomCharacters()};
        user.ExpectFile(NewTitle, path)
            .Expect(OverwriteQuestion(path), Answer::Yes)
            .Expect(Question("Inspect the key?", path), Answer::No);
        RunUnsuitably(KeyfileMode::Create, path);
        disk.Reset();
    };
    disk.Fail(FsCall::Flush, 1, FsStatus::NoSpace);
    create();
    EXPECT_EQ(folder.Read("new"), "old content");
    EXPECT_EQ(folder.Names(), std::set<std::string>{"new"});
    disk.Before(FsCall::Read, 1, [&] { folder.Write("new", std::string(64, 'x')); });
    create();
}

TEST_F(KeyfileChoiceTest, ChangesNothingWhereverTheUserGivesUp) {
    const std::string path = folder.Write("key", std::string(SixteenBytes) + "!");
    const auto overwrite = OverwriteQuestion(path);
    std::filesystem::create_directory(folder / "folder");
    user.ExpectFile("Get decryption key from keyfile", std::nullopt);
    GiveUp("first picker", KeyfileMode::Existing, Direction::Decrypt);
    user.ExpectFile(GetTitle, folder / "new")
        .Expect("Keyfile does not exist.",
                "Do you wish to create " + folder / "new" + " as a new random keyfile?",
                Answer::No);
    GiveUp("creating declined", KeyfileMode::Existing);
    user.ExpectFile(NewTitle, path).Expect(overwrite, Answer::No);
    GiveUp("overwriting declined", KeyfileMode::Create);
    user.ExpectFile(NewTitle, path).Expect(overwrite, Answer::Yes).Expect(repeat, Answer::Cancel);
    GiveUp("collecting cancelled", KeyfileMode::Create);
    user.ExpectFile(NewTitle, folder / "folder")
        .Expect("Unsuitable keyfile", folder / "folder" + "\r\nis a folder, not a file."
                                                          "\r\nPlease specify another keyfile.");
    GiveUp("no place for a keyfile", KeyfileMode::Create);
    EXPECT_EQ(folder.Names(), (std::set<std::string>{"key", "folder"}));
}

TEST_F(KeyfileChoiceTest, ShortensLongPathsAndDropsARejectedKey) {
    const std::string name(100, 'n');
    const std::string path = folder.Write(name, std::string(64, '\x7F'));
    inspector.answer = false;
    user.ExpectFile(GetTitle, path)
        .Expect("/tm..." + std::string(54, 'n'), "Inspect the key?", Answer::Yes);
    Run(KeyfileMode::Existing);
    EXPECT_EQ(inspector.fileLine, "/tm..." + std::string(60, 'n'));
    EXPECT_EQ(inspector.classLine, "Non-random non-text key from file");
    ExpectNoKey(key);
    EXPECT_EQ(ShownKeyfile("c:\\Keys\\\xC3\x89T\xC3\x89.Key"), "C:\\keys\\\xC3\xA9t\xC3\xA9.key");
}

using std::chrono::milliseconds;

/// The same bytes in every run.
class RepeatableRandom final : public RandomSource {
  public:
    void Fill(std::span<std::byte> into) override {
        std::ranges::generate(into, [this] { return static_cast<std::byte>(engine_() & 0xFFU); });
    }

  private:
    std::mt19937 engine_{2026};
};

TEST(RandomKey, FollowsTheFormulaOfClockAndPointer) {
    EXPECT_EQ(KeyCharacter(99, 6195, 3105), 33 + std::uint64_t{3303} * 6294 * 100 % 223);
    EXPECT_EQ(Hundredths(std::chrono::milliseconds(86'399'994)), 99U);
    EXPECT_EQ(Hundredths(std::chrono::milliseconds(86'399'995)), 100U);
}

TEST(RandomKey, ComesFromMovementOnlyAndShowsItsProgress) {
    test::StoppedClock clock;
    RepeatableRandom random;
    RandomKeyCollector collector(clock, random);
    const std::string line(63, '_');
    const std::string block = "\u2588";
    collector.PointerAt(300, 200); // where the pointer rests when the window opens
    for (int tick = 1; tick <= 20; ++tick) {
        clock.timeOfDay += RandomKeyCollector::TickInterval;
        collector.PointerAt(300, 200);
        collector.Tick();
        EXPECT_EQ(collector.IsWaiting(), tick >= 12) << tick;
    }
    EXPECT_EQ(collector.Progress(), line);
    for (int i = 0; i < 70; ++i) {
        collector.PointerAt(-5, i);
        collector.Tick();
        EXPECT_FALSE(collector.IsWaiting());
        EXPECT_EQ(collector.IsComplete(), i >= 63) << i;
        EXPECT_TRUE(i != 0 || collector.Progress() == block + line.substr(1));
    }
    EXPECT_EQ(collector.Take().size(), 64U);
    EXPECT_TRUE(collector.Take().empty());
}

TEST(RandomKey, IsUniformInEveryPlaceAndNeverTakenForText) {
    constexpr int Keys = 10'000;
    // 222 degrees of freedom: mean 222, deviation 21; exceeded by chance once in a million.
    constexpr double MostChiSquare = 337.0;
    test::StoppedClock clock;
    RepeatableRandom random;
    const auto collected = [&] {
        RandomKeyCollector collector(clock, random);
        for (std::int64_t x = 0; !collector.IsComplete(); ++x) { // a dull pointer
            clock.timeOfDay += RandomKeyCollector::TickInterval;
            collector.PointerAt(x % 2 * 15, 0);
            collector.Tick();
        }
        return collector.Take();
    };
    for (const bool byMovement : {true, false}) {
        std::array<std::array<int, KeyCharacterCount>, KeyfileBytes> counts{};
        for (int i = 0; i < Keys; ++i) {
            const SecretBytes key = byMovement ? collected() : MakeRandomKey(random);
            ASSERT_EQ(key.size(), KeyfileBytes);
            ASSERT_FALSE(byMovement && KeyIsText(key.text()));
            ASSERT_GE(BufferRandomness(key.bytes()), 0.88);
            for (std::size_t place = 0; place < KeyfileBytes; ++place) {
                const auto code = std::to_integer<std::size_t>(key.bytes()[place]);
                ASSERT_GE(code, FirstKeyCharacter);
                ++counts[place][code - FirstKeyCharacter];
            }
        }
        for (const auto& place : counts) {
            constexpr double Expected = double{Keys} / KeyCharacterCount;
            double chiSquare = 0;
            for (const int count : place)
                chiSquare += (count - Expected) * (count - Expected) / Expected;
            EXPECT_LT(chiSquare, MostChiSquare);
        }
    }
}

} // namespace
} // namespace zr5::test
