// One large file through the engine, through other programs and through a plain flushed copy, in
// rounds, so that a change of the disk's mood hits all of them.

#include "figures.h"
#include "libs/cipher/cipher_engine.h"
#include "libs/system/clock.h"
#include "libs/system/file_system.h"
#include "libs/system/random.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using zr5::bench::Median;
using zr5::bench::PrintFigure;
using Bytes = std::vector<std::byte>;

constexpr std::size_t PieceBytes = std::size_t{1} << 20U;
constexpr const char* Key = "CORRECTHORSEBATTERYSTAPLE";

[[noreturn]] void Fail(const std::string& what) {
    std::perror(what.c_str());
    std::exit(1);
}

double SecondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void Flush(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY);
    if (file < 0 || fsync(file) != 0) Fail(path);
    close(file);
}

void WriteAll(int file, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t put = write(file, bytes.data(), bytes.size());
        if (put < 0) Fail("write");
        bytes = bytes.subspan(static_cast<std::size_t>(put));
    }
}

void MakeRandomFile(const std::string& path, std::size_t mebibytes) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (file < 0) Fail(path);
    zr5::SystemRandom random;
    Bytes piece(PieceBytes);
    for (std::size_t i = 0; i < mebibytes; ++i) {
        random.Fill(piece);
        WriteAll(file, piece);
    }
    if (fsync(file) != 0) Fail(path);
    close(file);
}

void CopyFlushed(const std::string& from, const std::string& to) {
    const int input = open(from.c_str(), O_RDONLY);
    const int output = open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0600);
    if (input < 0 || output < 0) Fail("copy");
    Bytes piece(PieceBytes);
    while (true) {
        const ssize_t got = read(input, piece.data(), piece.size());
        if (got < 0) Fail("read");
        if (got == 0) break;
        WriteAll(output, std::span(piece).first(static_cast<std::size_t>(got)));
    }
    if (fsync(output) != 0) Fail("fsync");
    close(input);
    close(output);
}

/// One program to measure: each direction makes a new file and brings it to the disk.
struct Contender {
    std::string name;
    std::string needs; ///< the program, empty for our own code
    std::function<void()> encrypt;
    std::function<void()> decrypt;
    std::string sealed;               ///< what `encrypt` makes and `decrypt` reads
    std::function<void()> check = {}; ///< reads `sealed` and writes nothing; may be missing
    std::vector<double> encryptSeconds = {};
    std::vector<double> decryptSeconds = {};
    std::vector<double> checkSeconds = {};
};

bool IsInstalled(const std::string& program) {
    return program.empty() ||
           std::system(("command -v " + program + " > /dev/null 2>&1").c_str()) == 0;
}

void Shell(const std::string& command) {
    if (std::system(command.c_str()) != 0) {
        std::fprintf(stderr, "failed: %s\n", command.c_str());
        std::exit(1);
    }
}

enum class Work { Encrypt, Decrypt, Check };

struct Engine {
    std::unique_ptr<zr5::FileSystem> disk = zr5::MakeSystemFileSystem();
    zr5::SystemClock clock;
    zr5::SystemRandom random;
    std::unique_ptr<zr5::CipherEngine> engine = zr5::MakeCipherEngine(*disk, clock, random);

    Engine() {
        if (!engine->allocate_buffers()) Fail("allocate_buffers");
    }
    void Run(Work work, const std::string& from, const std::string& to) const {
        engine->operation_initialization(Key, work == Work::Encrypt ? zr5::Direction::Encrypt
                                                                    : zr5::Direction::Decrypt);
        const zr5::EngineResult result = work == Work::Encrypt ? engine->encrypt_file(from, to, {})
                                         : work == Work::Decrypt
                                             ? engine->decrypt_file(from, to, {})
                                             : engine->check_file(from, {});
        if (result != zr5::EngineResult::Success) {
            Fail("engine " + std::to_string(static_cast<int>(result)));
        }
    }
};

/// The whole life of an engine, buffers and key derivation included, as a program that is
/// started for this one file has it.
void RunEngine(Work work, const std::string& from, const std::string& to) {
    Engine().Run(work, from, to);
}

struct Paths {
    std::string folder;
    std::string plain = folder + "/plain";
    std::string back = folder + "/back";
};

std::vector<Contender> Contenders(const Paths& paths) {
    const std::string key(Key);
    const std::string& plain = paths.plain;
    const std::string& back = paths.back;
    const std::string& folder = paths.folder;
    const std::string ageKey = folder + "/age-key";
    if (IsInstalled("age-keygen")) Shell("age-keygen -o " + ageKey + " 2> /dev/null");
    const std::string gpg = "gpg --homedir " + folder +
                            " --batch --quiet --no-options --pinentry-mode loopback"
                            " --passphrase " +
                            key + " -z 0 ";
    const std::string openssl = "openssl enc -aes-256-ctr -pbkdf2 -pass pass:" + key;
    const auto sealedBy = [&](const char* who) { return folder + "/sealed." + who; };
    const auto program = [&](const std::string& name, const char* needs, const std::string& encrypt,
                             const std::string& decrypt) {
        const std::string sealed = sealedBy(needs);
        return Contender{name, needs,
                         [=] {
                             Shell(encrypt);
                             Flush(sealed);
                         },
                         [=] {
                             Shell(decrypt);
                             Flush(back);
                         },
                         sealed};
    };
    const std::string ours = sealedBy("engine");
    const std::string copied = sealedBy("copy");
    return {
        {"plain copy", "", [=] { CopyFlushed(plain, copied); }, [=] { CopyFlushed(copied, back); },
         copied},
        {"this engine", "", [=] { RunEngine(Work::Encrypt, plain, ours); },
         [=] { RunEngine(Work::Decrypt, ours, back); }, ours,
         [=] { RunEngine(Work::Check, ours, {}); }},
        program("age, X25519", "age",
                "age -e -i " + ageKey + " -o " + sealedBy("age") + " " + plain,
                "age -d -i " + ageKey + " -o " + back + " " + sealedBy("age")),
        program("openssl enc, AES-256-CTR", "openssl",
                openssl + " -in " + plain + " -out " + sealedBy("openssl"),
                openssl + " -d -in " + sealedBy("openssl") + " -out " + back),
        program("gpg -c, no compression", "gpg", gpg + "-o " + sealedBy("gpg") + " -c " + plain,
                gpg + "-o " + back + " -d " + sealedBy("gpg")),
        program("7z -mx=0 -p", "7z",
                "7z a -t7z -mx=0 -p" + key + " " + sealedBy("7z") + ". " + plain + " > /dev/null",
                "7z x -so -p" + key + " " + sealedBy("7z") + " > " + back),
    };
}

/// Every contender once, one after the other, so that whatever else the machine does hits all;
/// a different one begins each round, because what one leaves to the disk slows the next.
void RunRound(std::vector<Contender>& contenders, const Paths& paths, std::size_t first,
              bool counts) {
    std::vector<Contender*> order;
    for (std::size_t i = 0; i < contenders.size(); ++i) {
        order.push_back(&contenders[(first + i) % contenders.size()]);
    }
    const auto timed = [](const std::string& output, const std::function<void()>& work) {
        fs::remove(output);
        sync();
        return SecondsOf(work);
    };
    for (Contender* contender : order) {
        const double seconds = timed(contender->sealed, contender->encrypt);
        if (counts) contender->encryptSeconds.push_back(seconds);
    }
    for (Contender* contender : order) {
        const double seconds = timed(paths.back, contender->decrypt);
        if (counts) contender->decryptSeconds.push_back(seconds);
        Shell("cmp -s " + paths.plain + " " + paths.back);
        if (!contender->check) continue;
        const double checkSeconds = SecondsOf(contender->check);
        if (counts) contender->checkSeconds.push_back(checkSeconds);
    }
}

double MedianRatio(const std::vector<double>& own, const std::vector<double>& other) {
    std::vector<double> ratios(own.size());
    std::ranges::transform(own, other, ratios.begin(), std::divides<>());
    return Median(ratios);
}

/// Seconds, and the ratios to the copy and to the engine in the same round.
void PrintTable(const std::vector<Contender>& all) {
    const auto print = [](const std::vector<double>& own, const std::vector<double>& copy,
                          const std::vector<double>& engine) {
        std::printf(" %5.2f | %5.2f | %5.2f |", Median(own), MedianRatio(own, copy),
                    MedianRatio(own, engine));
    };
    std::printf("| | encryption, s | : copy | : engine | decryption, s | : copy | : engine |\n");
    std::printf("|---|---|---|---|---|---|---|\n");
    for (const Contender& contender : all) {
        std::printf("| %-24s |", contender.name.c_str());
        print(contender.encryptSeconds, all[0].encryptSeconds, all[1].encryptSeconds);
        print(contender.decryptSeconds, all[0].decryptSeconds, all[1].decryptSeconds);
        std::printf("\n");
    }
}

/// The engine against the copy, and every other program against the engine.
void PrintFigures(const std::vector<Contender>& all) {
    constexpr double MostTimesACopy = 1.25;
    const auto print = [&](const char* direction, const auto& seconds) {
        const double copy = MedianRatio(all[1].*seconds, all[0].*seconds);
        PrintFigure((std::string(direction) + ", times a flushed copy").c_str(), "at most 1.25",
                    copy, copy <= MostTimesACopy);
        for (std::size_t i = 2; i < all.size(); ++i) {
            const bool wantsTwice = all[i].needs == "gpg" || all[i].needs == "7z";
            const double ratio = MedianRatio(all[i].*seconds, all[1].*seconds);
            PrintFigure((std::string(direction) + ", " + all[i].name + " : engine").c_str(),
                        wantsTwice ? "more than 2" : "more than 1", ratio,
                        ratio > (wantsTwice ? 2.0 : 1.0));
        }
    };
    print("encryption", &Contender::encryptSeconds);
    print("decryption", &Contender::decryptSeconds);
}

/// What the first use of a key costs: time, and memory that stays when it is done.
void PrintDerivation(const Paths& paths) {
    const auto residentKiB = [] {
        long total = 0;
        long resident = 0;
        std::FILE* file = std::fopen("/proc/self/statm", "r");
        if (file == nullptr || std::fscanf(file, "%ld %ld", &total, &resident) != 2) Fail("statm");
        std::fclose(file);
        return resident * sysconf(_SC_PAGESIZE) / 1024;
    };
    const std::string small = paths.folder + "/small";
    const std::string sealed = paths.folder + "/small.sealed";
    std::ofstream(small) << "content";
    std::vector<double> seconds;
    long leftKiB = 0;
    for (int i = 0; i < 5; ++i) {
        const Engine engine;
        const long before = residentKiB();
        const auto once = [&] { engine.Run(Work::Encrypt, small, sealed); };
        const double first = SecondsOf(once);
        leftKiB = std::max(leftKiB, residentKiB() - before);
        seconds.push_back(first - SecondsOf(once));
    }
    const double median = Median(seconds);
    PrintFigure("key derivation, s", "at most 2.5", median, median <= 2.5);
    const double left = static_cast<double>(leftKiB) / 1024.0;
    PrintFigure("memory that stays after it, MiB", "at most 20", left, left <= 20.0);
}

/// Peak memory in KiB of a child that runs `work`.
long PeakKiB(const std::function<void()>& work) {
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    int status = 0;
    rusage used{};
    if (wait4(child, &status, 0, &used) != child || status != 0) Fail("child");
    return used.ru_maxrss;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 4) {
        std::fprintf(stderr, "usage: %s folder MiB rounds\n", arguments[0]);
        return 2;
    }
    std::string folder = std::string(arguments[1]) + "/zr5-bench-XXXXXX";
    if (mkdtemp(folder.data()) == nullptr) Fail(folder);
    const std::size_t mebibytes = std::strtoul(arguments[2], nullptr, 10);
    const std::size_t rounds = std::strtoul(arguments[3], nullptr, 10);

    const Paths paths{folder};
    MakeRandomFile(paths.plain, mebibytes);
    std::vector<Contender> contenders = Contenders(paths);
    for (const Contender& contender : contenders) {
        if (!IsInstalled(contender.needs)) std::printf("missing: %s\n", contender.needs.c_str());
    }
    std::erase_if(contenders, [](const Contender& c) { return !IsInstalled(c.needs); });

    const long nothing = PeakKiB([] {});
    const long engine = PeakKiB(contenders[1].encrypt);
    RunRound(contenders, paths, 0, false); // warms up
    for (std::size_t i = 0; i < rounds; ++i) {
        RunRound(contenders, paths, i, true);
    }
    std::printf("%zu MiB of random bytes, medians of %zu rounds\n\n", mebibytes, rounds);
    PrintTable(contenders);
    PrintFigures(contenders);
    const double mebibytesUsed = static_cast<double>(engine - nothing) / 1024.0;
    PrintFigure("peak memory beyond the bare program, MiB", "at most 300", mebibytesUsed,
                mebibytesUsed <= 300.0);
    const double check = MedianRatio(contenders[1].checkSeconds, contenders[1].decryptSeconds);
    PrintFigure("check, times a decryption", "at most 0.60", check, check <= 0.6);
    PrintDerivation(paths);
    fs::remove_all(folder);
    return 0;
}
