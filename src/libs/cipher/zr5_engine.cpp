#include "libs/cipher/cipher_engine.h"
#include "libs/cipher/jobs.h"

#include <array>
#include <new>
#include <optional>

namespace zr5 {
namespace {

class Zr5Engine final : public CipherEngine {
  public:
    Zr5Engine(FileSystem& fileSystem, Clock& clock, RandomSource& random, Argon2Cost cost)
        : fileSystem_(fileSystem),
          clock_(clock),
          random_(random),
          masters_(cost),
          fileSalts_(random, clock) {}

    bool allocate_buffers() override {
        try {
            plain_ = SecretBytes(PlainPieceBytes);
            sealed_ = SecretBytes(2 * HeaderBytes + SealedPieceBytes);
            return CryptoComputesKnownAnswers();
        } catch (const std::bad_alloc&) {
            return false;
        }
    }

    void deallocate_buffers() override {
        ForgetOperation();
        plain_.Clear();
        sealed_.Clear();
    }

    void operation_initialization(std::string_view key, Direction direction) override {
        direction_.reset();
        try {
            masters_.SetKey(key);
            if (IsReady()) direction_ = direction;
        } catch (const std::bad_alloc&) {
            ForgetOperation();
        }
    }

    EngineResult encrypt_file(const std::string& inputPath, const std::string& outputPath,
                              const EngineHooks& hooks) override {
        if (!TakeInitialization(Direction::Encrypt)) return EngineResult::NotInitialised;
        return Run(inputPath, outputPath, hooks,
                   [this](JobContext& job) { return RunEncryption(job, SaltOfRun()); });
    }

    EngineResult decrypt_file(const std::string& inputPath, const std::string& outputPath,
                              const EngineHooks& hooks) override {
        if (!TakeInitialization(Direction::Decrypt)) return EngineResult::NotInitialised;
        return Run(inputPath, outputPath, hooks, RunDecryption);
    }

    EngineResult check_file(const std::string& inputPath, const EngineHooks& hooks) override {
        if (!TakeInitialization(Direction::Decrypt)) return EngineResult::NotInitialised;
        return Run(inputPath, {}, hooks, RunCheck);
    }

    EngineResult verify_file(const std::string& inputPath, const std::string& outputPath,
                             const EngineHooks& hooks) override {
        if (!IsReady()) return EngineResult::NotInitialised;
        return Run(inputPath, outputPath, hooks, RunVerification);
    }

  private:
    [[nodiscard]] bool IsReady() const { return masters_.HasKey() && !plain_.empty(); }

    /// An initialisation serves one file.
    bool TakeInitialization(Direction direction) {
        const bool fits = direction_ == direction;
        if (fits) direction_.reset();
        return fits;
    }

    template <typename Job>
    EngineResult Run(const std::string& inputPath, const std::string& outputPath,
                     const EngineHooks& hooks, const Job& run) {
        try {
            Damage unread;
            Damage& damage = hooks.damage != nullptr ? *hooks.damage : unread;
            JobContext job{fileSystem_,     random_, masters_, fileSalts_, plain_.bytes(),
                           sealed_.bytes(), hooks,   damage,   inputPath,  outputPath};
            job.hooks.progress = Throttled(clock_, hooks.progress);
            return run(job);
        } catch (const std::bad_alloc&) {
            return EngineResult::NotInitialised;
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
        masters_.Clear();
        runSalt_.reset();
        direction_.reset();
    }

    FileSystem& fileSystem_;
    Clock& clock_;
    RandomSource& random_;
    SecretBytes plain_;
    SecretBytes sealed_;
    MasterKeys masters_;
    FileSalts fileSalts_;
    std::optional<RunSalt> runSalt_;
    unsigned saltGeneration_ = 0;
    std::optional<Direction> direction_;
};

} // namespace

Appearance AppearanceOf(FileSystem& fileSystem, const std::string& path) {
    const OpenResult opened = fileSystem.OpenForReading(path);
    if (opened.status != FsStatus::Ok) return Appearance::Unknown;
    OpenFile& file = *opened.file;
    const auto look = [&] {
        std::array<std::byte, VersionAt + 1> head{};
        const ReadResult got = file.Read(head);
        if (got.status != FsStatus::Ok || got.count == 0) return Appearance::Unknown;
        return LooksLikeHeader(std::span(head).first(got.count)) ? Appearance::Encrypted
                                                                 : Appearance::NotEncrypted;
    };
    const Appearance front = look();
    if (front != Appearance::NotEncrypted) return front;
    const auto info = file.Info();
    if (!info) return Appearance::Unknown;
    if (info->lengthBytes <= HeaderBytes) return front;
    const FsStatus moved = file.MoveTo(info->lengthBytes - HeaderBytes);
    return moved == FsStatus::Ok ? look() : Appearance::Unknown;
}

std::unique_ptr<CipherEngine> MakeCipherEngine(FileSystem& fileSystem, Clock& clock,
                                               RandomSource& random, Argon2Cost cost) {
    return std::make_unique<Zr5Engine>(fileSystem, clock, random, cost);
}

} // namespace zr5
