// Calibrates the measures of randomness. Used by bench/randomness.sh; see docs/randomness.md.
//   make FOLDER      files whose kind is known beyond doubt, each class in a subfolder, and those
//                    of FOLDER/plain encrypted
//   table FOLDER     a table of the classes: how many files are above 0
//   entropy FILES    the entropy of the bytes of each file
//   buffers FILES    how many pieces of 64 bytes pass for random keys

#include "libs/filekit/randomness.h"
#include "libs/cipher/cipher_engine.h"
#include "libs/filekit/file_kit.h"
#include "libs/system/file_system.h"
#include "libs/system/random.h"
#include "operation/listing_summary.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <numbers>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace zr5;
namespace fs = std::filesystem;

constexpr std::size_t SmallBytes = 16384;
constexpr std::size_t LargeBytes = 1'000'000;
/// What passes for a random key.
constexpr double LeastRandomness = 0.88;

void Write(const fs::path& path, const std::string& bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<long>(bytes.size()));
}

std::string LeastFirst(std::uint64_t value, std::size_t width) {
    std::string bytes;
    for (std::size_t i = 0; i < width; ++i)
        bytes += static_cast<char>(value >> (8 * i));
    return bytes;
}

std::string RandomBytes(std::size_t length) {
    std::string bytes(length, '\0');
    SystemRandom().Fill(std::as_writable_bytes(std::span(bytes)));
    return bytes;
}

std::string WavHeader(std::size_t dataBytes, unsigned rate, unsigned channels, unsigned bytesEach) {
    const unsigned frame = channels * bytesEach;
    return "RIFF" + LeastFirst(36 + dataBytes, 4) + "WAVEfmt " + LeastFirst(16, 4) +
           LeastFirst(1, 2) + LeastFirst(channels, 2) + LeastFirst(rate, 4) +
           LeastFirst(std::uint64_t{rate} * frame, 4) + LeastFirst(frame, 2) +
           LeastFirst(bytesEach * 8, 2) + "data" + LeastFirst(dataBytes, 4);
}

std::string Tone(std::size_t length, double hertz, double loudness, unsigned rate,
                 unsigned channels, unsigned bytesEach) {
    std::string data;
    const double top = std::ldexp(1.0, static_cast<int>(8 * bytesEach - 1)) - 1;
    for (std::uint64_t i = 0; data.size() < length; ++i) {
        const double turns = hertz * static_cast<double>(i) / rate;
        const double value = std::sin(2 * std::numbers::pi * turns) * top * loudness;
        const auto sample = static_cast<std::int64_t>(std::llround(value));
        const std::string bytes = LeastFirst(
            static_cast<std::uint64_t>(bytesEach == 1 ? sample + 128 : sample), bytesEach);
        for (unsigned c = 0; c < channels; ++c)
            data += bytes;
    }
    return WavHeader(data.size(), rate, channels, bytesEach) + data;
}

void MakeTones(const fs::path& folder) {
    for (const std::size_t length : {SmallBytes, LargeBytes}) {
        for (const double hertz : {50.0, 110.0, 440.0, 443.7, 1000.0, 3000.0, 9973.0}) {
            for (const double loudness : {0.125, 0.5, 1.0}) {
                for (const unsigned rate : {8000U, 44100U, 48000U}) {
                    if (hertz * 2 > rate) continue;
                    for (const unsigned channels : {1U, 2U}) {
                        for (const unsigned bytesEach : {1U, 2U, 3U, 4U}) {
                            char name[100];
                            std::snprintf(name, sizeof name, "%zu-%gHz-%g-%u-%uch-%ubit.wav",
                                          length, hertz, loudness, rate, channels, bytesEach * 8);
                            const std::string kind =
                                "tone-" + std::to_string(bytesEach * 8) + "bit";
                            Write(folder / kind / name,
                                  Tone(length, hertz, loudness, rate, channels, bytesEach));
                        }
                    }
                }
            }
        }
    }
}

void MakeCounters(const fs::path& folder) {
    for (const std::size_t length : {SmallBytes, LargeBytes}) {
        for (const std::size_t width : {1U, 2U, 3U, 4U, 8U}) {
            for (const std::uint64_t step : {1ULL, 3ULL, 77ULL, 257ULL, 65'537ULL, 16'909'319ULL}) {
                std::string bytes;
                for (std::uint64_t v = 0; bytes.size() < length; v += step)
                    bytes += LeastFirst(v, width);
                Write(folder / "counter" /
                          (std::to_string(length) + "-" + std::to_string(width) + "-" +
                           std::to_string(step)),
                      bytes);
            }
        }
        for (int value = 0; value < 256; value += 15) {
            Write(folder / "constant" / (std::to_string(length) + "-" + std::to_string(value)),
                  std::string(length, static_cast<char>(value)));
        }
    }
}

/// Portable pixmaps and bitmaps (24 bits a pixel) of gradients.
void MakeGradients(const fs::path& folder) {
    for (const unsigned side : {80U, 256U, 640U}) {
        for (int kind = 0; kind < 6; ++kind) {
            std::string pixels;
            for (unsigned y = 0; y < side; ++y) {
                for (unsigned x = 0; x < side; ++x) {
                    const double u = x / double(side), v = y / double(side);
                    double r = u, g = v, b = 1 - u;
                    if (kind == 1) r = g = b = u;
                    if (kind == 2) r = g = b = (u + v) / 2;
                    if (kind == 3) g = std::sin(20 * u) * 0.5 + 0.5;
                    if (kind == 4) r = std::fmod(u * v * 7, 1.0), g = std::fmod(u * 3, 1.0);
                    if (kind == 5) r = std::hypot(u - 0.5, v - 0.5), g = r * r, b = 1 - r;
                    for (const double c : {r, g, b})
                        pixels += static_cast<char>(static_cast<int>(c * 255));
                }
            }
            const std::string size = std::to_string(side);
            const std::string name = size + "-" + std::to_string(kind);
            Write(folder / "gradient" / (name + ".ppm"),
                  "P6\n" + size + " " + size + "\n255\n" + pixels);
            const std::string header = "BM" + LeastFirst(54 + pixels.size(), 4) + LeastFirst(0, 4) +
                                       LeastFirst(54, 4) + LeastFirst(40, 4) + LeastFirst(side, 4) +
                                       LeastFirst(side, 4) + LeastFirst(1, 2) + LeastFirst(24, 2) +
                                       LeastFirst(0, 4) + LeastFirst(pixels.size(), 4) +
                                       std::string(16, '\0');
            Write(folder / "gradient" / (name + ".bmp"), header + pixels);
        }
    }
}

void MakeRandom(const fs::path& folder) {
    for (const std::size_t length : {1023U, 1024U, 1025U, 16384U}) {
        for (int i = 0; i < 200; ++i)
            Write(folder / ("random-" + std::to_string(length)) / std::to_string(i),
                  RandomBytes(length));
    }
}

/// Every file of `folder`/plain as this program encrypts it.
void MakeEncrypted(const fs::path& folder, FileSystem& fileSystem) {
    if (!fs::exists(folder / "plain")) return;
    SystemClock clock;
    SystemRandom random;
    const auto engine = MakeCipherEngine(fileSystem, clock, random);
    if (!engine->allocate_buffers()) throw std::runtime_error("no buffers");
    fs::create_directories(folder / "zr5");
    for (const auto& entry : fs::directory_iterator(folder / "plain")) {
        engine->operation_initialization("CORRECTHORSEBATTERYSTAPLE", Direction::Encrypt);
        const std::string output = folder / "zr5" / entry.path().filename();
        if (engine->encrypt_file(entry.path(), output, {}) != EngineResult::Success)
            throw std::runtime_error("not encrypted: " + entry.path().string());
    }
    engine->deallocate_buffers();
}

struct Measured {
    std::vector<double> values; ///< in order of size
    [[nodiscard]] double Share() const {
        return 100.0 *
               static_cast<double>(std::ranges::count_if(values, [](double v) { return v > 0; })) /
               static_cast<double>(values.size());
    }
    void Print() {
        std::ranges::sort(values);
        std::printf(" %.1f | %.3f | %.3f | %.3f |", Share(), values.front(),
                    values[values.size() / 2], values.back());
    }
};

void PrintClass(FileKit& kit, const fs::path& folder) {
    Measured whole;
    Measured sample;
    std::size_t tooSmall = 0;
    for (const auto& entry : fs::directory_iterator(folder)) {
        const std::string path = entry.path();
        const double value = kit.fr(path, 0, {});
        if (value == RandomnessTooSmall) ++tooSmall;
        if (value <= RandomnessFailureLimit) continue;
        whole.values.push_back(value);
        sample.values.push_back(kit.fr(path, RandomnessSampleBytes, {}));
    }
    const std::string name = folder.filename();
    if (whole.values.empty()) {
        std::printf("| %s | %zu too small |\n", name.c_str(), tooSmall);
        return;
    }
    std::printf("| %s | %zu |", name.c_str(), whole.values.size());
    whole.Print();
    sample.Print();
    std::printf("\n");
}

void PrintTable(FileKit& kit, const fs::path& folder) {
    std::set<fs::path> classes;
    for (const auto& entry : fs::directory_iterator(folder))
        classes.insert(entry.path());
    std::printf("| class | files | whole file: above 0, %% | least | median | most "
                "| %zu bytes: above 0, %% | least | median | most |\n"
                "|---|---|---|---|---|---|---|---|---|---|\n",
                RandomnessSampleBytes);
    for (const fs::path& path : classes) {
        if (path.filename() != "plain") PrintClass(kit, path);
    }
}

std::string Read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void PrintEntropies(std::span<const std::string> paths) {
    for (const std::string& path : paths) {
        RandomnessMeter meter;
        const std::string content = Read(path);
        meter.Add(std::as_bytes(std::span(content)));
        std::printf("%.6f %s\n", meter.ByteEntropy(), path.c_str());
    }
}

void PrintBuffers(std::span<const std::string> paths) {
    constexpr std::size_t Bytes = 64;
    constexpr std::size_t Wanted = 100'000;
    std::size_t below = 0;
    double least = 1;
    for (std::size_t i = 0; i < Wanted; ++i) {
        const std::string buffer = RandomBytes(Bytes);
        const double value = BufferRandomness(std::as_bytes(std::span(buffer)));
        if (value < LeastRandomness) ++below;
        least = std::min(least, value);
    }
    std::printf("random: %zu of %zu below %.2f, least %.3f\n", below, Wanted, LeastRandomness,
                least);
    std::vector<std::string> pieces;
    for (const std::string& path : paths) {
        const std::string text = Read(path);
        for (std::size_t at = 0; at + Bytes <= text.size(); at += Bytes)
            pieces.push_back(text.substr(at, Bytes));
    }
    std::mt19937 engine(1); // NOLINT: the same choice every time
    std::ranges::shuffle(pieces, engine);
    if (pieces.size() > Wanted) pieces.resize(Wanted);
    // A piece without a blank holds no words but encoded data: a certificate, a fingerprint.
    std::size_t words = 0;
    std::size_t wordsAbove = 0;
    std::size_t encodedAbove = 0;
    double most = 0;
    for (const std::string& piece : pieces) {
        const double value = BufferRandomness(std::as_bytes(std::span(piece)));
        const bool isEncoded = piece.find(' ') == std::string::npos;
        if (isEncoded) {
            encodedAbove += value >= LeastRandomness ? 1 : 0;
            continue;
        }
        ++words;
        wordsAbove += value >= LeastRandomness ? 1 : 0;
        most = std::max(most, value);
    }
    std::printf("text: %zu of %zu at or above %.2f, most %.3f; "
                "of %zu pieces without a blank: %zu\n",
                wordsAbove, words, LeastRandomness, most, pieces.size() - words, encodedAbove);
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() < 2) return 1;
    const auto fileSystem = MakeSystemFileSystem();
    SystemRandom random;
    const auto kit = MakeFileKit(*fileSystem, random);
    const std::string& what = arguments[0];
    const auto paths = std::span(arguments).subspan(1);
    if (what == "make") {
        MakeTones(paths[0]);
        MakeCounters(paths[0]);
        MakeGradients(paths[0]);
        MakeRandom(paths[0]);
        MakeEncrypted(paths[0], *fileSystem);
    } else if (what == "table") {
        PrintTable(*kit, paths[0]);
    } else if (what == "entropy") {
        PrintEntropies(paths);
    } else if (what == "buffers") {
        PrintBuffers(paths);
    }
}
