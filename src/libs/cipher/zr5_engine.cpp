#include "libs/cipher/zr5_engine.h"

#include "libs/cipher/key_text.h"
#include "libs/cipher/zr5_crypto.h"
#include "libs/cipher/zr5_jobs.h"

#include <array>
#include <cassert>
#include <new>
#include <optional>

namespace zr5 {
namespace {

class Zr5Engine final : public CipherEngine {
  public:
    Zr5Engine(FileSystem& fileSystem, Clock& clock, RandomSource& random)
        : fileSystem_(fileSystem), clock_(clock), random_(random) {}

    std::int32_t allocate_buffers() override {
        try {
            plain_ = SecretBytes(PlainPieceBytes);
            sealed_ = SecretBytes(HeaderBytes + SealedPieceBytes);
            return CryptoComputesKnownAnswers() ? 1 : 0;
        } catch (const std::bad_alloc&) {
            return 0;
        }
    }

    void deallocate_buffers() override {
        ForgetOperation();
        plain_.Clear();
        sealed_.Clear();
    }

    void operation_initialization(std::string_view key, std::int32_t direction,
                                  std::uint64_t /*inputLengthBytes*/,
                                  std::int32_t /*reserved*/) override {
        direction_.reset();
        try {
            masters_.SetKey(key);
            if (masters_.HasKey() && !plain_.empty()) direction_ = direction;
        } catch (const std::bad_alloc&) {
            ForgetOperation();
        }
    }

    std::int32_t encrypt_file(const std::string& inputPath,
                              const std::string& outputPath) override {
        return RunJob(EngineEncrypt, inputPath, outputPath);
    }

    std::int32_t decrypt_file(const std::string& inputPath,
                              const std::string& outputPath) override {
        return RunJob(EngineDecrypt, inputPath, outputPath);
    }

    std::int32_t verify_file(const std::string& inputPath, const std::string& outputPath) override {
        if (!masters_.HasKey() || plain_.empty()) return engine_code::NotInitialised;
        JobContext job = JobFor(inputPath, outputPath);
        try {
            return RunVerification(job);
        } catch (const std::bad_alloc&) {
            return engine_code::NotInitialised;
        }
    }

    std::int32_t key_is_text(std::string_view key, std::int32_t length) const override {
        assert(length >= 0);
        return KeyBytesAreText(key.substr(0, static_cast<std::size_t>(length))) ? 1 : 0;
    }

    void SetProgress(ProgressFunction progress) override { progress_ = std::move(progress); }
    void SetOutputObserver(OutputObserver* observer) override { observer_ = observer; }

  private:
    JobContext JobFor(const std::string& inputPath, const std::string& outputPath) {
        return {fileSystem_,    random_,         masters_,
                plain_.bytes(), sealed_.bytes(), Throttled(clock_, progress_),
                observer_,      inputPath,       outputPath};
    }

    std::int32_t RunJob(std::int32_t direction, const std::string& inputPath,
                        const std::string& outputPath) {
        if (direction_ != direction) return engine_code::NotInitialised;
        direction_.reset(); // an initialisation serves one file
        JobContext job = JobFor(inputPath, outputPath);
        try {
            return direction == EngineEncrypt ? RunEncryption(job, SaltOfRun())
                                              : RunDecryption(job);
        } catch (const std::bad_alloc&) {
            return engine_code::NotInitialised;
        }
    }

    /// One salt for a run of the program and a key.
    const RunSalt& SaltOfRun() {
        if (!runSalt_ || saltGeneration_ != masters_.Generation()) {
            random_.Fill(runSalt_.emplace());
            saltGeneration_ = masters_.Generation();
        }
        return *runSalt_;
    }

    void ForgetOperation() {
        masters_ = MasterKeys{};
        runSalt_.reset();
        direction_.reset();
    }

    FileSystem& fileSystem_;
    Clock& clock_;
    RandomSource& random_;
    SecretBytes plain_;
    SecretBytes sealed_;
    MasterKeys masters_;
    std::optional<RunSalt> runSalt_;
    unsigned saltGeneration_ = 0;
    std::optional<std::int32_t> direction_;
    ProgressFunction progress_;
    OutputObserver* observer_ = nullptr;
};

} // namespace

bool BeginsLikeEncrypted(FileSystem& fileSystem, const std::string& path) {
    const OpenResult file = fileSystem.OpenForReading(path);
    if (file.status != FsStatus::Ok) return false;
    std::array<std::byte, Magic.size()> head{};
    const ReadResult got = file.file->Read(head);
    return got.status == FsStatus::Ok && got.count == head.size() && head == Magic;
}

std::unique_ptr<CipherEngine> MakeCipherEngine(FileSystem& fileSystem, Clock& clock,
                                               RandomSource& random) {
    return std::make_unique<Zr5Engine>(fileSystem, clock, random);
}

} // namespace zr5
