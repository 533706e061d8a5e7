#include "operation/operation_run.h"

#include "operation/report/extension_warnings.h"
#include "setup/wording.h"
#include "util/display.h"
#include "util/durations.h"
#include "util/numbers.h"
#include "util/paths.h"

#include <set>

namespace zr5 {
namespace {

constexpr std::uint64_t NoDecimalsFrom = 1'024'000;

void WarnOfAntiVirusIn(const OperationContext& operation) {
    ExtensionCounts counts;
    for (const WorkItem& item : operation.list) {
        if (item.kind == WorkItem::Kind::File) counts.Add(ExtensionOf(item.inputPath));
    }
    WarnOfAntiVirus(operation.machine.user, counts);
}

/// False, after a message, when there are so many files that the limit is likely a mistake.
bool IsWithinTwiceTheMaximum(const OperationContext& operation) {
    const std::uint64_t files = operation.list.Files();
    const Purpose purpose = PurposeOf(operation.setup);
    if (files < 2 * static_cast<std::uint64_t>(operation.setup.MaxNumFiles)) return true;
    operation.machine.user.Ask(Notice(
        "At least " + std::to_string(files) + " files are to be " + VerbForm(purpose, "encrypted") +
            ".\r\nThis is twice as many as the maximum number of files\r\n"
            "currently specified.\r\n"
            "Either increase that number or consider whether\r\nyou wish to " +
            VerbForm(purpose, "encrypt") + " this many files in a single operation.",
        "Maximum number of files exceeded", BoxIcon::Exclamation));
    return false;
}

/// False, after a message, when two inputs would have one output.
bool HasDistinctOutputs(const OperationContext& operation) {
    if (operation.setup.OutputMode == OutputTarget::OverwriteInput) return true;
    std::set<std::string> outputs;
    for (const WorkItem& item : operation.list) {
        if (item.kind != WorkItem::Kind::File || outputs.insert(item.outputPath).second) continue;
        operation.machine.user.Ask(Notice("Output file specification " +
                                              DisplayName(operation.setup.FileName[OutputSide]) +
                                              " produces duplicate output filenames!",
                                          "Error", BoxIcon::Exclamation));
        return false;
    }
    return true;
}

void OpenJournal(const OperationContext& operation) {
    const std::string path = OperationJournal::PathIn(operation.machine.ownFolder);
    if (operation.journal.OpenNew(path)) return;
    const bool inPlace = operation.setup.OutputMode == OutputTarget::OverwriteInput;
    operation.screen.AppendToReport(
        "Note: the file " + DisplayName(path) +
        " cannot be written.  Should this operation be interrupted,\r\nthen " +
        (inPlace ? "the next start of the program will not complete it."
                 : "an unfinished result may be left.") +
        "\r\n");
}

std::string FilesLine(const std::string& which, std::uint64_t count) {
    return "Number of files " + which + ":" + AfterText(static_cast<std::int64_t>(count)) + "\r\n";
}

std::string CountsText(Purpose purpose, const OperationTotals& totals) {
    const std::string first =
        FilesLine(purpose == Purpose::Check ? "checked" : "processed", totals.filesProcessed);
    if (purpose != Purpose::Check) {
        return first + FilesLine(VerbForm(purpose, "encrypted"), totals.filesProcessed);
    }
    const std::uint64_t opened = totals.filesProcessed - totals.filesNotOpened;
    return first + FilesLine("intact", totals.filesIntact) +
           FilesLine("damaged", opened - totals.filesIntact) +
           (totals.filesNotOpened == 0
                ? ""
                : FilesLine("damaged altogether, or not encrypted with this key",
                            totals.filesNotOpened)) +
           (totals.filesEmpty == 0 ? "" : FilesLine("empty", totals.filesEmpty));
}

/// Nothing, unless files were left out.
std::string LeftOutText(const OperationContext& operation, const OperationTotals& totals) {
    if (totals.filesLeftOut == 0) return {};
    std::string text = FilesLine("left out", totals.filesLeftOut);
    if (totals.filesLeftOut == operation.list.Files()) {
        text += operation.setup.Operation == Direction::Encrypt
                    ? "Nothing was left to do: all files are encrypted already.\r\n"
                    : "Nothing was left to do: no file is encrypted.\r\n";
    }
    return text;
}

void WriteClosingSummary(const OperationContext& operation, const OperationTotals& totals) {
    const Purpose purpose = PurposeOf(operation.setup);
    std::string text = "\r\n" + CountsText(purpose, totals) + LeftOutText(operation, totals) +
                       "Total KB " + VerbForm(purpose, "encrypted") + ": " +
                       KilobytesText(totals.totalBytes) + "\r\n";
    if (const std::int64_t seconds = operation.screen.Time().ElapsedSeconds(); seconds > 0) {
        text += "Elapsed time: " +
                FormatDuration(static_cast<std::uint64_t>(seconds), DurationForm::Long) + "\r\n";
    }
    operation.screen.AppendAlways(text);
}

/// From the warnings to the end of the work; the run is halted where there is not to be any.
OperationTotals RunFiles(const OperationContext& operation, const FileWork& work) {
    ReportScreen& screen = operation.screen;
    if (screen.IsFull()) {
        operation.machine.user.Ask(TextboxFullBox());
        screen.Halt();
        return {};
    }
    if (screen.StopRequested()) return {};
    if (operation.inputFolder && operation.machine.fileSystem.IdentityOf(
                                     operation.setup.Folder[InputSide]) != operation.inputFolder) {
        screen.AppendAlways("\r\n" + std::string(FolderIsAnother));
        screen.Halt();
        return {};
    }
    const bool writes = !operation.setup.IsCheck();
    if (writes) WarnOfAntiVirusIn(operation);
    if (!IsWithinTwiceTheMaximum(operation) || !HasDistinctOutputs(operation)) {
        screen.Halt();
        return {};
    }
    screen.AppendToReport("\r\n");
    if (writes) OpenJournal(operation);
    const OperationTotals totals = work(operation);
    operation.journal.Close();
    return totals;
}

} // namespace

std::string KilobytesText(std::uint64_t bytes) {
    return WithThousands(static_cast<double>(bytes) / 1024.0, bytes >= NoDecimalsFrom ? 0 : 2);
}

void RunOperation(const OperationContext& operation, const ListingSummary& listing,
                  const FileWork& work) {
    ReportScreen& screen = operation.screen;
    const Purpose purpose = PurposeOf(operation.setup);
    if (!screen.IsRunning()) screen.BeginRun(purpose);
    screen.AppendToReport(ListingSummaryText(
        purpose, {operation.list.Files(), listing.wasCutShort, listing.randomness}));
    WriteClosingSummary(operation, RunFiles(operation, work));
    screen.EndRun();
}

} // namespace zr5
