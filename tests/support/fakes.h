#pragma once

// An engine and a file kit that answer what a test sets and remember what they were asked.

#include "libs/cipher/cipher_engine.h"
#include "libs/filekit/file_kit.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace zr5::test {

class FakeEngine : public CipherEngine {
  public:
    struct Call {
        std::string name;
        std::string input;
        std::string output;
    };
    std::int32_t allocateResult = 1;
    std::int32_t fileResult = engine_code::Success;
    std::vector<Call> calls; ///< in order; `operation_initialization` has the key as its input
    std::string lastKey;
    std::int32_t lastDirection = -1;
    ProgressFunction progress;
    /// Runs inside each file call, for tests that need something on the disk.
    std::function<void(const std::string& input, const std::string& output)> onFile;

    [[nodiscard]] std::vector<std::string> CallNames() const {
        std::vector<std::string> names;
        for (const Call& call : calls)
            names.push_back(call.name);
        return names;
    }

    std::int32_t allocate_buffers() override {
        calls.push_back({"allocate_buffers", {}, {}});
        return allocateResult;
    }
    void deallocate_buffers() override { calls.push_back({"deallocate_buffers", {}, {}}); }
    void operation_initialization(std::string_view key, std::int32_t direction, std::uint64_t,
                                  std::int32_t) override {
        lastKey = key;
        lastDirection = direction;
        calls.push_back({"operation_initialization", lastKey, {}});
    }
    std::int32_t encrypt_file(const std::string& input, const std::string& output) override {
        calls.push_back({"encrypt_file", input, output});
        if (onFile) onFile(input, output);
        return fileResult;
    }
    std::int32_t decrypt_file(const std::string& input, const std::string& output) override {
        calls.push_back({"decrypt_file", input, output});
        if (onFile) onFile(input, output);
        return fileResult;
    }
    std::int32_t verify_file(const std::string& input, const std::string& output) override {
        calls.push_back({"verify_file", input, output});
        return engine_code::Success;
    }
    std::int32_t key_is_text(std::string_view, std::int32_t) const override { return 1; }
    void SetProgress(ProgressFunction function) override { progress = std::move(function); }
    void SetOutputObserver(OutputObserver*) override {}
};

class FakeKit : public FileKit {
  public:
    struct Purge {
        std::string path;
        std::int32_t overwrite;
        bool remove;
        bool reserved;
        friend bool operator==(const Purge&, const Purge&) = default;
    };
    double fileRandomness = 0.5;
    std::map<std::string, double> randomnessOf; ///< by path, where it is not fileRandomness
    std::vector<std::pair<std::string, std::int32_t>> measured; ///< path and sample, in order
    ProgressFunction progress;
    bool stopped = false;
    double bufferRandomness = 0.96;
    std::int32_t purgeResult = 0;
    std::int32_t extensionResult = 0;
    std::int32_t loadResult = 1;
    std::map<std::int16_t, std::string> texts;
    std::vector<Purge> purged;
    std::vector<std::string> loaded;
    std::function<void(const std::string& path)> onPurge;

    std::int64_t compare_files(const std::string&, const std::string&) override {
        return compare_code::Identical;
    }
    double fr(const std::string& path, std::int32_t sampleBytes) override {
        measured.emplace_back(path, sampleBytes);
        stopped = false;
        if (progress) progress(1, 2);
        if (stopped) return RandomnessStopped;
        const auto found = randomnessOf.find(path);
        return found == randomnessOf.end() ? fileRandomness : found->second;
    }
    double randomness_measure(std::string_view, std::int32_t, std::int16_t) override {
        return bufferRandomness;
    }
    std::int32_t purge_file(const std::string& path, std::int32_t overwrite, bool remove,
                            bool reserved) override {
        purged.push_back({path, overwrite, remove, reserved});
        if (onPurge) onPurge(path);
        return purgeResult;
    }
    std::int32_t new_file_creatable(const std::string&) override { return 1; }
    std::int32_t new_filepath_extension(std::string& path) override {
        if (extensionResult == 0) path += ".zr5";
        return extensionResult;
    }
    std::int32_t gt(std::int16_t number, std::int16_t, std::span<char> buffer, std::int32_t,
                    std::int32_t) override {
        const auto found = texts.find(number);
        if (found == texts.end()) return 0;
        std::copy(found->second.begin(), found->second.end(), buffer.begin());
        return static_cast<std::int32_t>(found->second.size());
    }
    std::int32_t lt(const std::string& path, std::int32_t) override {
        loaded.push_back(path);
        return loadResult;
    }
    void SetBeforeOverwriting(BeforeOverwriting) override {}
    void SetProgress(ProgressFunction function) override { progress = std::move(function); }
    void StopMeasuring() override { stopped = true; }
};

} // namespace zr5::test
