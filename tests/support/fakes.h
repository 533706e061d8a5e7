#pragma once

// An engine and a file kit that answer what a test sets and remember what they were asked, and a
// clock that says what the test sets.

#include "libs/cipher/cipher_engine.h"
#include "libs/filekit/file_kit.h"
#include "libs/system/clock.h"

#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace zr5::test {

class StoppedClock : public Clock {
  public:
    mutable std::chrono::milliseconds now{0};
    std::chrono::milliseconds step{0}; ///< by which it moves on whenever it is read
    std::chrono::milliseconds timeOfDay{std::chrono::hours(14) + std::chrono::minutes(3)};
    [[nodiscard]] std::chrono::milliseconds Now() const override { return now += step; }
    [[nodiscard]] std::chrono::milliseconds TimeOfDay() const override { return timeOfDay; }
    [[nodiscard]] std::chrono::nanoseconds SinceEpoch() const override { return timeOfDay; }
};

class FakeEngine : public CipherEngine {
  public:
    struct Call {
        std::string name;
        std::string input;
        std::string output;
    };

    bool allocates = true;
    EngineResult fileResult = EngineResult::Success;
    std::vector<Call> calls; ///< in order; `operation_initialization` has the key as its input
    std::string lastKey;
    Direction lastDirection = Direction::Encrypt;
    /// Runs inside each file call, for tests that need something on the disk.
    std::function<void(const std::string& input, const std::string& output)> onFile;

    [[nodiscard]] std::vector<std::string> CallNames() const {
        std::vector<std::string> names;
        for (const Call& call : calls)
            names.push_back(call.name);
        return names;
    }

    bool allocate_buffers() override {
        calls.push_back({"allocate_buffers", {}, {}});
        return allocates;
    }
    void deallocate_buffers() override { calls.push_back({"deallocate_buffers", {}, {}}); }
    void operation_initialization(std::string_view key, Direction direction) override {
        lastKey = key;
        lastDirection = direction;
        calls.push_back({"operation_initialization", lastKey, {}});
    }
    EngineResult encrypt_file(const std::string& input, const std::string& output,
                              const EngineHooks& hooks) override {
        return WorkOn("encrypt_file", input, output, hooks);
    }
    EngineResult decrypt_file(const std::string& input, const std::string& output,
                              const EngineHooks& hooks) override {
        return WorkOn("decrypt_file", input, output, hooks);
    }
    EngineResult check_file(const std::string& input, const EngineHooks& hooks) override {
        return WorkOn("check_file", input, {}, hooks);
    }
    EngineResult verify_file(const std::string& input, const std::string& output,
                             const EngineHooks&) override {
        calls.push_back({"verify_file", input, output});
        return EngineResult::Success;
    }

  private:
    EngineResult WorkOn(const char* name, const std::string& input, const std::string& output,
                        const EngineHooks& hooks) {
        calls.push_back({name, input, output});
        if (onFile) onFile(input, output);
        if (hooks.progress) hooks.progress(1, 2);
        return fileResult;
    }
};

class FakeKit : public FileKit {
  public:
    struct Purge {
        std::string path;
        PurgeMode mode;
        friend bool operator==(const Purge&, const Purge&) = default;
    };

    double fileRandomness = 0.5;
    std::map<std::string, double> randomnessOf; ///< by path, where it is not fileRandomness
    std::vector<std::pair<std::string, std::uint64_t>> measured; ///< path and sample, in order
    double bufferRandomness = 0.96;
    PurgeResult purgeResult = PurgeResult::Done;
    bool findsName = true;
    TextFileResult loadResult;
    std::map<std::int16_t, std::string> texts;
    std::vector<Purge> purged;
    std::vector<std::string> loaded;
    std::function<void(const std::string& path)> onPurge;

    Comparison compare_files(const std::string&, const std::string&,
                             const ProgressFunction&) override {
        return {};
    }
    double fr(const std::string& path, std::uint64_t sampleBytes,
              const MeasureProgress& progress) override {
        measured.emplace_back(path, sampleBytes);
        if (progress && !progress(1, 2)) return RandomnessStopped;
        const auto found = randomnessOf.find(path);
        return found == randomnessOf.end() ? fileRandomness : found->second;
    }
    double randomness_measure(std::span<const std::byte>) override { return bufferRandomness; }
    PurgeResult purge_file(const std::string& path, PurgeMode mode, const PurgeHooks&) override {
        purged.push_back({path, mode});
        if (onPurge) onPurge(path);
        return purgeResult;
    }
    bool new_file_creatable(const std::string&) override { return true; }
    std::optional<std::string> new_filepath_extension(const std::string& path) override {
        if (!findsName) return std::nullopt;
        return path + ".zr5-new";
    }
    std::optional<std::string> gt(std::int16_t number) override {
        const auto found = texts.find(number);
        if (found == texts.end()) return std::nullopt;
        return found->second;
    }
    TextFileResult lt(const std::string& path) override {
        loaded.push_back(path);
        return loadResult;
    }
};

} // namespace zr5::test
