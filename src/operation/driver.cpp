#include "operation/driver.h"

#include "operation/file_ops.h"
#include "operation/in_place.h"
#include "operation/result_text.h"
#include "setup/verb_form.h"
#include "util/display.h"
#include "util/numbers.h"
#include "util/paths.h"
#include "util/text.h"

#include <algorithm>

namespace zr5 {
namespace {

constexpr std::string_view LineEnd = "\r\n";
constexpr std::size_t NameColumn = 12;
constexpr std::uint64_t LeastEncryptedBytes = 3;
constexpr std::uint64_t FilesBetweenEvents = 10;

bool CountsAsProcessed(std::int16_t code) {
    return code == 0 || code == outcome::NotRenamed || code == outcome::NotRenamedOnFloppy;
}

class Driver {
  public:
    Driver(const OperationContext& operation, ReportScreen& screen)
        : operation_(operation),
          screen_(screen),
          warning_(operation.setup),
          filesLeft_(std::ranges::count(operation.list, WorkItem::Kind::File, &WorkItem::kind)) {}

    void Run() {
        WriteHeading();
        CountFiles();
        if (screen_.IsFull()) {
            screen_.AppendAlways("Textbox is full.\r\n");
            screen_.Halt();
            return;
        }
        std::uint64_t index = 0;
        for (const WorkItem& item : operation_.list) {
            if (item.kind != WorkItem::Kind::File) {
                WriteFolder(item);
                continue;
            }
            --filesLeft_;
            ProcessFile(item);
            screen_.EndFile(item.lengthBytes);
            if (abandoned_ || EndsAfter(++index)) return;
        }
    }

  private:
    [[nodiscard]] std::string Verb(std::string_view word) const {
        return VerbForm(operation_.setup.Operation, word);
    }

    /// "Encrypting <what> to a file with same name."
    void WriteHeading() {
        const bool inPlace = operation_.setup.OutputMode == OutputTarget::OverwriteInput;
        const auto files =
            std::ranges::count(operation_.list, WorkItem::Kind::File, &WorkItem::kind);
        std::string heading = Verb("Encrypting") + " " + InputDescription(operation_.setup) +
                              " to " + (files == 1 ? "a file" : "files");
        if (inPlace) heading += " with same name.";
        screen_.AppendToReport(heading + "\r\n");
    }

    void CountFiles() {
        std::uint64_t totalBytes = 0;
        for (const WorkItem& item : operation_.list) {
            totalBytes += item.lengthBytes;
        }
        screen_.BeginFiles(static_cast<std::uint64_t>(filesLeft_), totalBytes);
    }

    void WriteFolder(const WorkItem& item) {
        std::string text = "\r\nFolder: " + DisplayName(item.inputPath) + "\r\n";
        if (item.kind == WorkItem::Kind::ProhibitedFolder) {
            text += "***  Prohibited folder  ***\r\n";
        } else if (item.kind == WorkItem::Kind::UnreadableFolder) {
            text += "***  Folder cannot be read  ***\r\n";
        }
        screen_.AppendToReport(text);
    }

    /// One entry of the report, from its name to its line end.
    void ProcessFile(const WorkItem& item) {
        BeginEntry(item.inputPath);
        const auto info = operation_.machine.fileSystem.Info(item.inputPath);
        const std::uint64_t lengthBytes = info ? info->lengthBytes : 0;
        const bool isRegular = info && info->kind == FileKind::Regular;

        if (isRegular && lengthBytes == 0) {
            EndEntry(item, {outcome::IsEmpty, {}}, 0);
        } else if (isRegular && Decrypts() && lengthBytes < LeastEncryptedBytes) {
            EndEntry(item, {outcome::IsTooSmall, {}}, 0);
        } else {
            screen_.AppendToReport(info ? " " + WithThousands(lengthBytes) + " bytes   " : "  ",
                                   true);
            if (isRegular && !MayBeDecrypted(item.inputPath, lengthBytes)) {
                EndLine();
                return;
            }
            const std::string note = "  ... " + Verb("Encrypting") + " ... ";
            screen_.AppendToReport(note, true);
            screen_.BeginFile(NameOf(item.inputPath), lengthBytes, PassesOver(item));
            operation_.machine.user.ProcessEvents();
            const FileResult result = Work(item);
            screen_.RemoveFromReport(note);
            EndEntry(item, result, lengthBytes);
        }
    }

    void BeginEntry(const std::string& path) {
        std::string name = NameOf(path);
        const std::size_t characters = CharacterCount(name);
        if (characters < NameColumn) name.insert(0, NameColumn - characters, ' ');
        screen_.AppendToReport("  " + name);
        ++screen_.counters.filesAttempted;
    }

    void EndEntry(const WorkItem& item, const FileResult& result, std::uint64_t lengthBytes) {
        if (CountsAsProcessed(result.outcome)) {
            ++screen_.counters.filesProcessed;
            screen_.counters.totalBytes += lengthBytes;
        }
        screen_.AppendToReport(OutcomeText(item, result));
        if (!result.leftPath.empty()) {
            AppendRemark("An unfinished result may be left in " + DisplayName(result.leftPath) +
                         ".");
        }
        if (operation_.journal != nullptr && operation_.journal->HasFailed()) {
            AppendRemark("The file " + DisplayName(operation_.machine.journalPath) +
                         " cannot be written.");
        }
        EndLine();
    }

    void AppendRemark(const std::string& text) {
        screen_.AppendToReport(std::string(LineEnd) + ContinuationIndent + text);
    }

    void EndLine() {
        screen_.AppendToReport(LineEnd, true);
        ++screen_.counters.reportLines;
        if (screen_.ReportsFiles() && screen_.IsFull()) screen_.ReportBufferFull();
    }

    /// Asks when a file that is to be decrypted does not look encrypted. False: leave it out.
    bool MayBeDecrypted(const std::string& path, std::uint64_t lengthBytes) {
        if (!Decrypts() || !operation_.mayMeetPlaintext ||
            lengthBytes < std::uint64_t{RandomnessSampleBytes}) {
            return true;
        }
        const double randomness = operation_.machine.fileKit.fr(path, RandomnessSampleBytes);
        const bool wasMeasured = randomness > RandomnessFailureLimit;
        if (!wasMeasured || randomness >= RandomnessThreshold) return true;
        UserPort& user = operation_.machine.user;
        if (user.Ask(Question("This file appears NOT to be encrypted?\r\n"
                              "Attempt to decrypt it anyway?",
                              "Anomaly", BoxIcon::Question, Answer::No)) == Answer::Yes) {
            return true;
        }
        screen_.AppendToReport("skipped (file seems not encrypted)");
        ++screen_.counters.filesSkippedAsNotEncrypted;
        if (filesLeft_ > 0 && user.Ask(Question("Abort this " + Verb("encryption") + " operation?",
                                                "Abort?")) == Answer::Yes) {
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
        if (!IsInPlace(item)) {
            return ProcessToOther(operation_, item.inputPath, item.outputPath);
        }
        const auto nextPass = [this] { screen_.NextPass(); };
        return ProcessInPlace(operation_, item.inputPath,
                              {nextPass, [&] {
                                   nextPass();
                                   if (warning_.IsDueFor(item.inputPath)) {
                                       screen_.ShowPurgeWarning(warning_, item.inputPath);
                                   }
                               }});
    }

    [[nodiscard]] std::string OutcomeText(const WorkItem& item, const FileResult& result) const {
        const std::string output = DisplayName(result.resultPath);
        switch (result.outcome) {
        case 0:
            return SuccessText(item, result);
        case outcome::IsExecutable:
            return "This is the ZR5 executable.  " + Verb("Encryption") + " not performed.";
        case outcome::IsKeyfile:
            return "This is the current keyfile.  " + Verb("Encryption") + " not performed.";
        case outcome::IsEmpty:
            return "  This file is empty (0 bytes).";
        case outcome::IsTooSmall:
            return "  This file is too small to have been ZR5-encrypted.";
        case outcome::NoTemporaryName:
            return "Unable to get temporary output filename.";
        case outcome::NotRenamed:
            return "Error when renaming temporary output file. " + ResultIsIn(output);
        case outcome::IsExcludedType:
            return "ZR5 does not " + Verb("encrypt") + "-in-place files with extension " +
                   ExtensionOf(item.inputPath) + ".";
        case outcome::NotRenamedOnFloppy:
            return "Error: probably insufficient space on the floppy disk in drive " +
                   item.inputPath.substr(0, 1) + ".  " + ResultIsIn(output);
        default:
            return EngineResultText(result.outcome, output);
        }
    }

    [[nodiscard]] std::string SuccessText(const WorkItem& item, const FileResult& result) const {
        const auto info = operation_.machine.fileSystem.Info(result.resultPath);
        const std::string path =
            result.resultPath == item.inputPath ? "" : DisplayName(result.resultPath) + "  ";
        return "-> " + path + WithThousands(info ? info->lengthBytes : 0) + " bytes";
    }

    [[nodiscard]] std::string ResultIsIn(const std::string& output) const {
        return "The result of the " + Verb("encryption") + " operation is in the file " + output +
               ".";
    }

    /// Between two files. True: the user has stopped the operation.
    bool EndsAfter(std::uint64_t index) {
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

    [[nodiscard]] bool Decrypts() const { return operation_.setup.Operation == Function::Decrypt; }

    [[nodiscard]] static std::string NameOf(const std::string& path) {
        return DisplayName(SplitPath(path).name);
    }

    const OperationContext& operation_;
    ReportScreen& screen_;
    PurgeWarning warning_;
    std::ptrdiff_t filesLeft_;
    bool abandoned_ = false;
};

} // namespace

std::string InputDescription(const OperationSetup& setup) {
    if (setup.InputMode == InputSource::SingleFile) return DisplayName(setup.FilePath(Input));
    const std::string pattern = setup.EffectivePattern();
    const std::string which = pattern == AllFilesPattern ? "all files" : DisplayName(pattern);
    return which + " in the folder " + DisplayName(setup.Folder[Input]);
}

void ProcessFiles(const OperationContext& operation, ReportScreen& screen) {
    Driver(operation, screen).Run();
}

} // namespace zr5
