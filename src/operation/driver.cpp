#include "operation/driver.h"

#include "operation/file_work.h"
#include "operation/report/extension_warnings.h"
#include "setup/wording.h"
#include "util/display.h"
#include "util/numbers.h"
#include "util/paths.h"
#include "util/text.h"

namespace zr5 {
namespace {

constexpr std::string_view LineEnd = "\r\n";
constexpr std::size_t NameColumn = 12;
constexpr std::uint64_t LeastEncryptedBytes = 3;
constexpr std::uint64_t FilesBetweenEvents = 10;

class Driver {
  public:
    explicit Driver(const OperationContext& operation)
        : operation_(operation),
          screen_(operation.screen),
          warning_(operation.setup),
          filesLeft_(operation.list.Files()) {}

    OperationTotals Run() {
        WriteHeading();
        screen_.BeginFiles(operation_.list.Files(), operation_.list.TotalBytes());
        const bool isCheck = operation_.setup.IsCheck();
        screen_.BeginOutcome(isCheck ? "intact" : Verb("encrypted"),
                             isCheck ? "not intact" : "failed", operation_.list.Files());
        if (screen_.IsFull()) {
            screen_.AppendAlways("Textbox is full.\r\n");
            screen_.Halt();
            return totals_;
        }
        std::uint64_t index = 0;
        for (const WorkItem& item : operation_.list) {
            if (item.kind != WorkItem::Kind::File) {
                WriteFolder(item);
                continue;
            }
            --filesLeft_;
            if (IsInListedFolder()) ProcessFile(item);
            screen_.EndFile(item.lengthBytes);
            if (abandoned_ || EndsAfter(++index)) break;
        }
        return totals_;
    }

  private:
    [[nodiscard]] std::string Verb(std::string_view word) const {
        return VerbForm(PurposeOf(operation_.setup), word);
    }

    /// "Encrypting <what> to a file with same name."
    void WriteHeading() {
        screen_.AppendToReport(Verb("Encrypting") + " " + InputDescription(operation_.setup) +
                               Destination() + "\r\n");
    }

    [[nodiscard]] std::string Destination() const {
        if (operation_.setup.IsCheck()) return "; nothing is written.";
        const bool inPlace = operation_.setup.OutputMode == OutputTarget::OverwriteInput;
        return std::string(operation_.list.Files() == 1 ? " to a file" : " to files") +
               (inPlace ? " with same name." : "");
    }

    void WriteFolder(const WorkItem& item) {
        folder_ = item.kind == WorkItem::Kind::Folder ? &item : nullptr;
        folderIsAnother_ = false;
        std::string text = "\r\nFolder: " + DisplayName(item.inputPath) + "\r\n";
        if (item.kind == WorkItem::Kind::ProhibitedFolder) {
            text += "***  Prohibited folder  ***\r\n";
        } else if (item.kind == WorkItem::Kind::UnreadableFolder) {
            text += "***  Folder cannot be read  ***\r\n";
        }
        screen_.AppendToReport(text);
    }

    /// A folder may be swapped for another one while the operation runs. What lies there under the
    /// names of the list was never shown to the user.
    bool IsInListedFolder() {
        if (folder_ == nullptr) return true;
        const auto found = operation_.machine.fileSystem.IdentityOf(folder_->inputPath);
        if (found == folder_->identity) return true;
        if (!folderIsAnother_) {
            screen_.AppendToReport(FolderIsAnother);
        }
        folderIsAnother_ = true;
        return false;
    }

    /// One entry of the report, from its name to its line end.
    void ProcessFile(const WorkItem& item) {
        BeginEntry(item.inputPath);
        const auto info = operation_.machine.fileSystem.Info(item.inputPath);
        const std::uint64_t lengthBytes = info ? info->lengthBytes : 0;
        const bool isRegular = info && info->kind == FileKind::Regular;

        const bool isLeftOut = isRegular && IsLeftOut(item.inputPath);
        if (isRegular && lengthBytes == 0) {
            EndEntry(item, {Outcome::IsEmpty}, 0);
        } else if (isRegular && !isLeftOut && Decrypts() && lengthBytes < LeastEncryptedBytes) {
            EndEntry(item, {Outcome::IsTooSmall}, 0);
        } else {
            screen_.AppendToReport(info ? " " + WithThousands(lengthBytes) + " bytes   " : "  ");
            if (isLeftOut) {
                EndEntry(item, {Outcome::LeftOut}, lengthBytes);
                return;
            }
            if (isRegular && !MayBeDecrypted(item.inputPath, lengthBytes)) {
                screen_.EndEntry(EntryKind::LeftAlone);
                EndLine();
                return;
            }
            const std::string note = "  ... " + Verb("Encrypting") + " ... ";
            screen_.AppendToReport(note);
            screen_.BeginFile(NameOf(item.inputPath), lengthBytes, PassesOver(item));
            operation_.machine.user.ProcessEvents();
            operation_.journal.SetTally(
                {totals_.filesProcessed + totals_.filesLeftOut, operation_.list.Files()});
            const FileResult result = Work(item);
            screen_.RemoveFromReport(note);
            EndEntry(item, result, lengthBytes);
        }
    }

    /// Judged by what the file is now, not by what it was when it was counted: the user has agreed
    /// to a rule, not to a list. Between the question and its turn hours may pass; a file that
    /// something else has encrypted meanwhile would be encrypted twice, and one that was encrypted
    /// then and is plaintext by now would stay readable.
    [[nodiscard]] bool IsLeftOut(const std::string& path) const {
        return operation_.leavesOut &&
               LooksDone(operation_.setup.Operation, operation_.machine.fileSystem, path);
    }

    void BeginEntry(const std::string& path) {
        std::string name = NameOf(path);
        const std::size_t characters = CharacterCount(name);
        if (characters < NameColumn) name.insert(0, NameColumn - characters, ' ');
        screen_.BeginEntry();
        screen_.AppendToReport("  " + name);
    }

    void EndEntry(const WorkItem& item, const FileResult& result, std::uint64_t lengthBytes) {
        Count(result, lengthBytes);
        const auto output = operation_.machine.fileSystem.Info(result.outputPath);
        screen_.AppendToReport(ResultText(result, item.inputPath, operation_.setup.Operation,
                                          output ? output->lengthBytes : 0));
        if (!result.leftPath.empty()) {
            AppendRemark("An unfinished result may be left in " + DisplayName(result.leftPath) +
                         ".");
        }
        if (operation_.journal.TakeFailure()) {
            AppendRemark("The journal of operations in " +
                         DisplayName(operation_.machine.ownFolder) +
                         (operation_.journal.MustStop()
                              ? " cannot be written, so the operation ends here."
                              : " could not be written; another takes its place."));
        }
        // A file that can only have been cut off is no encrypted file left alone.
        const bool isRest = operation_.setup.IsCheck() && result.outcome == Outcome::IsTooSmall;
        screen_.EndEntry(isRest ? EntryKind::Failed : result.Kind());
        EndLine();
    }

    void Count(const FileResult& result, std::uint64_t lengthBytes) {
        if (result.outcome == Outcome::LeftOut) ++totals_.filesLeftOut;
        const bool counts =
            operation_.setup.IsCheck() ? CountChecked(result) : result.IsProcessed();
        if (!counts) return;
        ++totals_.filesProcessed;
        totals_.totalBytes += lengthBytes;
    }

    /// False when nothing was found out about the file.
    bool CountChecked(const FileResult& result) {
        const EngineResult found = result.engineResult;
        const bool isIntact = result.outcome == Outcome::Intact;
        const bool isNotOpened =
            found == EngineResult::WrongKeyOrCorrupt || result.outcome == Outcome::IsTooSmall;
        if (result.outcome == Outcome::IsEmpty) ++totals_.filesEmpty;
        if (isIntact) ++totals_.filesIntact;
        if (isNotOpened) ++totals_.filesNotOpened;
        return isIntact || isNotOpened || IsPartial(found) || found == EngineResult::ReadError;
    }

    void AppendRemark(const std::string& text) {
        screen_.AppendToReport(std::string(LineEnd) + ContinuationIndent + text);
    }

    void EndLine() {
        screen_.AppendToReport(LineEnd);
        if (screen_.ReportsFiles() && screen_.IsFull()) screen_.ReportBufferFull();
    }

    /// Asks when a file that is to be decrypted does not look encrypted. False: leave it out. A
    /// check does no harm to such a file and tells of it in its entry.
    bool MayBeDecrypted(const std::string& path, std::uint64_t lengthBytes) {
        const bool asks = Decrypts() && !operation_.setup.IsCheck() && operation_.mayMeetPlaintext;
        if (!asks || lengthBytes < RandomnessSampleBytes) return true;
        const double randomness = operation_.machine.fileKit.fr(path, RandomnessSampleBytes, {});
        const bool wasMeasured = randomness > RandomnessFailureLimit;
        if (!wasMeasured || randomness >= RandomnessThreshold) return true;
        UserPort& user = operation_.machine.user;
        if (user.Ask(Question("This file appears NOT to be encrypted?\r\n"
                              "Attempt to decrypt it anyway?",
                              "Anomaly", BoxIcon::Question, Answer::No)) == Answer::Yes) {
            return true;
        }
        screen_.AppendToReport("skipped (file seems not encrypted)");
        if (filesLeft_ > 0 &&
            user.Ask(Question("Abort this " + Verb("encryption") + " operation?", "Abort?",
                              BoxIcon::Question, Answer::No)) == Answer::Yes) {
            abandoned_ = true;
            screen_.Halt();
        }
        return false;
    }

    [[nodiscard]] bool IsInPlace(const WorkItem& item) const {
        return operation_.setup.OutputMode == OutputTarget::OverwriteInput ||
               SameFile(operation_.machine.fileSystem, item.inputPath, item.outputPath);
    }

    [[nodiscard]] unsigned PassesOver(const WorkItem& item) const {
        return IsInPlace(item) ? InPlacePasses(operation_.setup.Operation) : 1;
    }

    FileResult Work(const WorkItem& item) {
        if (operation_.setup.IsCheck()) return CheckOne(operation_, item.inputPath);
        if (!IsInPlace(item)) {
            return ProcessToOther(operation_, item.inputPath, item.outputPath);
        }
        return ProcessInPlace(operation_, item.inputPath, [&] {
            if (warning_.IsDueFor(item.inputPath)) {
                screen_.ShowPurgeWarning(warning_, item.inputPath);
            }
        });
    }

    /// Between two files. True: the user has stopped the operation, or nothing may be overwritten.
    bool EndsAfter(std::uint64_t index) {
        if (operation_.journal.MustStop()) {
            screen_.Halt();
            return true;
        }
        if (index % FilesBetweenEvents == 0) {
            operation_.machine.user.ProcessEvents();
            if (screen_.StopRequested()) {
                screen_.AppendToReport(LineEnd);
                return true;
            }
        }
        screen_.PauseStep();
        return screen_.StopRequested();
    }

    [[nodiscard]] bool Decrypts() const { return operation_.setup.Operation == Direction::Decrypt; }

    [[nodiscard]] static std::string NameOf(const std::string& path) {
        return DisplayName(SplitPath(path).name);
    }

    const OperationContext& operation_;
    ReportScreen& screen_;
    PurgeWarning warning_;
    std::uint64_t filesLeft_;
    OperationTotals totals_;
    const WorkItem* folder_ = nullptr; ///< in which the next files lie; none for single files
    bool folderIsAnother_ = false;
    bool abandoned_ = false;
};

} // namespace

OperationTotals ProcessFiles(const OperationContext& operation) {
    return Driver(operation).Run();
}

} // namespace zr5
