#include "operation/reliability_test.h"

#include "keys/normalise.h"
#include "keys/random_key.h"
#include "operation/copies_folder.h"
#include "operation/operation_run.h"
#include "util/code_page.h"
#include "util/display.h"
#include "util/numbers.h"
#include "util/paths.h"

namespace zr5 {
namespace {

/// The words for a result of `compare_files`.
std::string ComparisonText(std::int64_t code) {
    switch (code) {
    case compare_code::Identical:
        return "identical";
    case compare_code::FirstNotOpened:
        return "Unable to open first file.";
    case compare_code::SecondNotOpened:
        return "Unable to open second file.";
    case compare_code::FirstNotRead:
        return "Unable to read first file.";
    case compare_code::SecondNotRead:
        return "Unable to read second file.";
    case compare_code::FirstEmpty:
        return "First file is empty.";
    case compare_code::SecondEmpty:
        return "Second file is empty.";
    default:
        return code < 0 ? "Unknown error #" + std::to_string(code) + "."
                        : "Files differ at byte" + AfterText(code) + ".";
    }
}

struct TestFile {
    std::string path; ///< of the original
    std::string name;
    std::uint64_t lengthBytes = 0;
};

std::vector<TestFile> TestFiles(const WorkList& list) {
    std::vector<TestFile> files;
    for (const WorkItem& item : list) {
        if (item.kind != WorkItem::Kind::File) continue;
        files.push_back({item.inputPath, SplitPath(item.inputPath).name, item.lengthBytes});
    }
    return files;
}

std::vector<std::string> NamesOf(const std::vector<TestFile>& files) {
    std::vector<std::string> names;
    names.reserve(files.size());
    for (const TestFile& file : files)
        names.push_back(file.name);
    return names;
}

class ReliabilityTest {
  public:
    ReliabilityTest(const OperationContext& operation, const ReliabilityRequest& request,
                    ReportScreen& screen)
        : operation_(operation),
          machine_(operation.machine),
          request_(request),
          screen_(screen),
          folder_(operation.setup.Folder[Input]),
          files_(TestFiles(operation.list)),
          copies_(machine_.fileSystem, NamesOf(files_)) {}
    /// No random key may live on in the engine; the current one is handed to it with every file.
    ~ReliabilityTest() { machine_.engine.operation_initialization({}, EngineEncrypt, 0, 0); }
    ReliabilityTest(const ReliabilityTest&) = delete;
    ReliabilityTest& operator=(const ReliabilityTest&) = delete;

    void Run() {
        if (!copies_.Make(folder_)) {
            screen_.AppendAlways("Unable to make a folder for the copies in " +
                                 DisplayName(folder_) + "\r\n");
            screen_.Halt();
            return;
        }
        if (copies_.HasNumber()) {
            screen_.AppendAlways("Note: there are other folders " + DisplayName(folder_) +
                                 "zr5test-copies.  If earlier tests\r\nhave left them, then they "
                                 "may be deleted.\r\n");
        }
        for (int k = 1; k <= request_.performances && !screen_.StopRequested(); ++k) {
            if (k > 1) Line("");
            if (!MakesRoom()) break;
            if (k == 1) {
                Perform(k, operation_.key);
            } else {
                Perform(k, NewKey());
            }
        }
        if (!screen_.StopRequested() && compared_ > 0) {
            screen_.AppendAlways(
                "\r\nAll decrypted files are identical with the original files.\r\n");
        }
        RemoveCopies();
    }

  private:
    /// A decrypted copy of the performance before must not pass for one of the next.
    bool MakesRoom() {
        if (copies_.RemoveCopies()) return true;
        screen_.AppendAlways("Unable to remove the copies of the performance before.\r\n");
        screen_.Halt();
        return false;
    }

    /// In the canonical form, so that a keyfile of the bytes that are reported is the same key.
    CurrentKey NewKey() {
        CurrentKey key;
        key.keyText = NormaliseKey(MakeRandomKey(request_.random).text());
        key.keyState = key_state::Keyfile;
        return key;
    }

    void Perform(int k, const CurrentKey& key) {
        WriteHeader(k, key);
        EncryptAll(key);
        if (screen_.StopRequested()) return;
        DecryptAll(key);
        if (screen_.StopRequested()) return;
        CompareAll(key);
    }

    void WriteHeader(int k, const CurrentKey& key) {
        if (request_.performances > 1) {
            Line("Reliability test #" + std::to_string(k) + " of " +
                 std::to_string(request_.performances));
        }
        Line(std::to_string(files_.size()) + " test file" + (files_.size() == 1 ? "" : "s") +
             " in " + DisplayName(folder_));
        const std::string_view text = key.keyText.text();
        const bool isText =
            machine_.engine.key_is_text(text, static_cast<std::int32_t>(text.size())) != 0;
        Line(std::to_string(text.size()) + "-byte " +
             (isText ? "text key: " + FromCodePage1252(text) : "non-text key"));
    }

    void EncryptAll(const CurrentKey& key) {
        WorkList list;
        for (const TestFile& file : files_) {
            list.push_back({WorkItem::Kind::File, file.path, copies_.Encrypted() + file.name,
                            file.lengthBytes});
        }
        Process({Function::Encrypt, folder_, copies_.Encrypted()}, key, list);
    }

    /// Files that could not be encrypted have their line already.
    void DecryptAll(const CurrentKey& key) {
        WorkList list;
        for (const TestFile& file : files_) {
            const std::string encrypted = copies_.Encrypted() + file.name;
            const auto info = machine_.fileSystem.Info(encrypted);
            if (!info) continue;
            list.push_back({WorkItem::Kind::File, encrypted, copies_.Decrypted() + file.name,
                            info->lengthBytes});
        }
        // The closing summary counts what was encrypted, once.
        OperationCounters counters = screen_.counters;
        Process({Function::Decrypt, copies_.Encrypted(), copies_.Decrypted()}, key, list);
        counters.reportLines = screen_.counters.reportLines;
        screen_.counters = counters;
    }

    struct Pass {
        Function function;
        const std::string& from;
        const std::string& to;
    };
    void Process(const Pass& pass, const CurrentKey& key, const WorkList& list) {
        if (list.empty()) return;
        OperationSetup setup = operation_.setup;
        setup.Operation = pass.function;
        setup.OutputMode = OutputTarget::SeparateOutput;
        setup.Folder = {pass.from, pass.to};
        ProcessFiles({setup, key, list, machine_, nullptr, false}, screen_);
    }

    void CompareAll(const CurrentKey& key) {
        Line("Comparison of decrypted files with original files");
        BeginProgress();
        bool failed = false;
        for (const TestFile& file : files_) {
            if (!Compare(file)) failed = true;
            screen_.EndFile(file.lengthBytes);
            machine_.user.ProcessEvents();
            screen_.PauseStep();
            if (screen_.StopRequested()) break;
        }
        if (failed) WriteFailure(key);
    }

    void BeginProgress() {
        std::uint64_t totalBytes = 0;
        for (const TestFile& file : files_)
            totalBytes += file.lengthBytes;
        screen_.BeginFiles(files_.size(), totalBytes);
    }

    /// False when the file was not given back as it was.
    bool Compare(const TestFile& file) {
        const std::string start = DisplayName(file.name) + ": ";
        if (WasLeftOutAsEmpty(file)) {
            Line(start + ComparisonText(compare_code::FirstEmpty));
            return true;
        }
        const std::string decrypted = copies_.Decrypted() + file.name;
        screen_.BeginFile(DisplayName(file.name), file.lengthBytes, 1);
        const std::int64_t result = machine_.fileKit.compare_files(file.path, decrypted);
        if (result == compare_code::Identical) {
            ++compared_;
            Line(start + ComparisonText(result));
            return true;
        }
        screen_.AppendAlways(start + ComparisonText(result) + "\r\n");
        keepsCopies_ = true; // they can tell what went wrong
        return false;
    }

    /// An empty file is never encrypted, which is no failure.
    bool WasLeftOutAsEmpty(const TestFile& file) {
        const auto info = machine_.fileSystem.Info(file.path);
        return info && info->kind == FileKind::Regular && info->lengthBytes == 0 &&
               !machine_.fileSystem.Info(copies_.Encrypted() + file.name);
    }

    void WriteFailure(const CurrentKey& key) {
        std::string text = "\r\nReliability test failed.\r\nAscii values of bytes in key:";
        for (const std::byte byte : key.keyText.bytes())
            text += AfterText(std::to_integer<std::int64_t>(byte));
        screen_.AppendAlways(text + "\r\n");
        screen_.Halt();
    }

    void RemoveCopies() {
        const std::string where = DisplayName(copies_.Path()) + "\r\n";
        if (keepsCopies_) {
            copies_.Keep();
            screen_.AppendAlways("\r\nThe encrypted and the decrypted copies are kept in " + where);
        } else if (!copies_.Remove()) {
            screen_.AppendAlways("\r\nThe test could not remove everything in " + where);
        }
    }

    void Line(const std::string& text) {
        screen_.AppendToReport(text + "\r\n", true);
        if (screen_.ReportsFiles() && screen_.IsFull()) screen_.ReportBufferFull();
    }

    const OperationContext& operation_;
    Machine& machine_;
    const ReliabilityRequest& request_;
    ReportScreen& screen_;
    const std::string& folder_;
    std::vector<TestFile> files_;
    CopiesFolder copies_;
    std::uint64_t compared_ = 0;
    bool keepsCopies_ = false;
};

} // namespace

void RunReliabilityTest(const OperationContext& operation, const ReliabilityRequest& request,
                        ReportScreen& screen, const ListingSummary& listing) {
    // That the files of a test look encrypted is no reason to warn.
    RunOperation(operation, screen, {0, listing.wasCutShort, std::nullopt},
                 [&request](const OperationContext& confirmed, ReportScreen& report) {
                     ReliabilityTest(confirmed, request, report).Run();
                 });
}

} // namespace zr5
