#include "operation/reliability_test.h"

#include "keys/classification.h"
#include "keys/normalise.h"
#include "keys/random_key.h"
#include "operation/copies_folder.h"
#include "operation/operation_run.h"
#include "util/code_page.h"
#include "util/display.h"
#include "util/numbers.h"
#include "util/paths.h"

#include <cstdlib>

namespace zr5 {
namespace {

/// The words for a result of `compare_files`.
std::string ComparisonText(const Comparison& comparison) {
    switch (comparison.outcome) {
    case CompareOutcome::Identical:
        return "identical";
    case CompareOutcome::Different:
        return "Files differ at byte" +
               AfterText(static_cast<std::int64_t>(comparison.firstDifference)) + ".";
    case CompareOutcome::FirstNotOpened:
        return "Unable to open first file.";
    case CompareOutcome::SecondNotOpened:
        return "Unable to open second file.";
    case CompareOutcome::FirstNotRead:
        return "Unable to read first file.";
    case CompareOutcome::SecondNotRead:
        return "Unable to read second file.";
    case CompareOutcome::FirstEmpty:
        return "First file is empty.";
    case CompareOutcome::SecondEmpty:
        return "Second file is empty.";
    }
    std::abort();
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
    ReliabilityTest(const OperationContext& operation, int performances)
        : operation_(operation),
          machine_(operation.machine),
          performances_(performances),
          screen_(operation.screen),
          folder_(operation.setup.Folder[InputSide]),
          files_(TestFiles(operation.list)),
          copies_(machine_.fileSystem, NamesOf(files_)) {}
    /// No random key may live on in the engine; the current one is handed to it with every file.
    ~ReliabilityTest() { machine_.engine.operation_initialization({}, Direction::Encrypt); }
    ReliabilityTest(const ReliabilityTest&) = delete;
    ReliabilityTest& operator=(const ReliabilityTest&) = delete;

    OperationTotals Run() {
        if (!copies_.Make(folder_)) {
            screen_.AppendAlways("Unable to make a folder for the copies in " +
                                 DisplayName(folder_) + "\r\n");
            screen_.Halt();
            return totals_;
        }
        if (copies_.HasNumber()) {
            screen_.AppendAlways("Note: there are other folders " + DisplayName(folder_) +
                                 "zr5test-copies.  If earlier tests\r\nhave left them, then they "
                                 "may be deleted.\r\n");
        }
        for (int k = 1; k <= performances_ && !screen_.StopRequested(); ++k) {
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
        return totals_;
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
        key.keyText = NormaliseKey(MakeRandomKey(machine_.random).text());
        key.keyState = KeyState::Keyfile;
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
        if (performances_ > 1) {
            Line("Reliability test #" + std::to_string(k) + " of " + std::to_string(performances_));
        }
        Line(std::to_string(files_.size()) + " test file" + (files_.size() == 1 ? "" : "s") +
             " in " + DisplayName(folder_));
        const std::string_view text = key.keyText.text();
        if (KeyIsText(text)) screen_.WillHoldKey();
        Line(std::to_string(text.size()) + "-byte " +
             (KeyIsText(text) ? "text key: " + FromCodePage1252(text) : "non-text key"));
    }

    void EncryptAll(const CurrentKey& key) {
        WorkList list;
        for (const TestFile& file : files_) {
            list.AddFile(file.path, copies_.Encrypted() + file.name, file.lengthBytes);
        }
        // The closing summary counts what was encrypted, once.
        const OperationTotals encrypted =
            Process({Direction::Encrypt, folder_, copies_.Encrypted()}, key, list);
        totals_.filesProcessed += encrypted.filesProcessed;
        totals_.totalBytes += encrypted.totalBytes;
    }

    /// Files that could not be encrypted have their line already.
    void DecryptAll(const CurrentKey& key) {
        WorkList list;
        for (const TestFile& file : files_) {
            const std::string encrypted = copies_.Encrypted() + file.name;
            const auto info = machine_.fileSystem.Info(encrypted);
            if (!info) continue;
            list.AddFile(encrypted, copies_.Decrypted() + file.name, info->lengthBytes);
        }
        Process({Direction::Decrypt, copies_.Encrypted(), copies_.Decrypted()}, key, list);
    }

    struct Pass {
        Direction direction;
        const std::string& from;
        const std::string& to;
    };
    OperationTotals Process(const Pass& pass, const CurrentKey& key, const WorkList& list) {
        if (list.Files() == 0) return {};
        OperationSetup setup = operation_.setup;
        setup.Operation = pass.direction;
        setup.OutputMode = OutputTarget::SeparateOutput;
        setup.Folder = {pass.from, pass.to};
        OperationJournal none(machine_.fileSystem); // copies need none
        return ProcessFiles({setup, key, list, machine_, screen_, none, false});
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
        screen_.BeginOutcome("identical", "not identical", files_.size());
    }

    /// False when the file was not given back as it was.
    bool Compare(const TestFile& file) {
        const std::string start = DisplayName(file.name) + ": ";
        screen_.BeginEntry();
        if (WasLeftOutAsEmpty(file)) {
            screen_.EndEntry(EntryKind::LeftAlone);
            Line(start + ComparisonText({CompareOutcome::FirstEmpty}));
            return true;
        }
        screen_.BeginFile(DisplayName(file.name), file.lengthBytes, 1);
        const Comparison result = CompareCopy(file);
        if (result.outcome == CompareOutcome::Identical) {
            ++compared_;
            screen_.EndEntry(EntryKind::Success);
            Line(start + ComparisonText(result));
            return true;
        }
        screen_.EndEntry(EntryKind::Failed);
        screen_.AppendAlways(start + ComparisonText(result) + "\r\n");
        keepsCopies_ = true; // they can tell what went wrong
        return false;
    }

    /// With the decrypted copy, or, to tell where it differs, with what was salvaged of a damaged
    /// one, which is a failure even when all of the content is there.
    Comparison CompareCopy(const TestFile& file) {
        const std::string whole = copies_.Decrypted() + file.name;
        const std::string salvage =
            NumberedName(machine_.fileSystem, whole, std::string(SalvageSuffix), 1);
        const ProgressFunction progress = Throttled(machine_.clock, screen_.PassProgress());
        if (!machine_.fileSystem.Info(whole) && machine_.fileSystem.Info(salvage)) {
            const Comparison result = machine_.fileKit.compare_files(file.path, salvage, progress);
            if (result.outcome != CompareOutcome::Identical) return result;
        }
        return machine_.fileKit.compare_files(file.path, whole, progress);
    }

    /// An empty file is never encrypted, which is no failure.
    bool WasLeftOutAsEmpty(const TestFile& file) {
        const auto info = machine_.fileSystem.Info(file.path);
        return info && info->kind == FileKind::Regular && info->lengthBytes == 0 &&
               !machine_.fileSystem.Info(copies_.Encrypted() + file.name);
    }

    void WriteFailure(const CurrentKey& key) {
        screen_.WillHoldKey();
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
        screen_.AppendToReport(text + "\r\n");
        if (screen_.ReportsFiles() && screen_.IsFull()) screen_.ReportBufferFull();
    }

    const OperationContext& operation_;
    Machine& machine_;
    int performances_;
    ReportScreen& screen_;
    const std::string& folder_;
    std::vector<TestFile> files_;
    CopiesFolder copies_;
    OperationTotals totals_;
    std::uint64_t compared_ = 0;
    bool keepsCopies_ = false;
};

} // namespace

void RunReliabilityTest(const OperationContext& operation, int performances,
                        const ListingSummary& listing) {
    // That the files of a test look encrypted is no reason to warn.
    RunOperation(operation, {0, listing.wasCutShort, std::nullopt},
                 [performances](const OperationContext& confirmed) {
                     return ReliabilityTest(confirmed, performances).Run();
                 });
}

} // namespace zr5
