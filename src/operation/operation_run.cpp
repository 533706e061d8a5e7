#include "operation/operation_run.h"

#include "operation/anti_virus_warning.h"
#include "setup/verb_form.h"
#include "util/display.h"
#include "util/durations.h"
#include "util/numbers.h"
#include "util/paths.h"

#include <algorithm>
#include <set>

namespace zr5 {
namespace {

constexpr std::uint64_t NoDecimalsFrom = 1'024'000;

std::uint64_t FilesIn(const WorkList& list) {
    return static_cast<std::uint64_t>(
        std::ranges::count(list, WorkItem::Kind::File, &WorkItem::kind));
}

void WarnOfAntiVirusIn(const OperationContext& operation) {
    ExtensionCounts counts;
    for (const WorkItem& item : operation.list) {
        if (item.kind == WorkItem::Kind::File) counts.Add(ExtensionOf(item.inputPath));
    }
    WarnOfAntiVirus(operation.machine.user, counts);
}

/// False, after a message, when there are so many files that the limit is likely a mistake.
bool IsWithinTwiceTheMaximum(const OperationContext& operation) {
    const std::uint64_t files = FilesIn(operation.list);
    const Function function = operation.setup.Operation;
    if (files < 2 * static_cast<std::uint64_t>(operation.setup.MaxNumFiles)) return true;
    operation.machine.user.Ask(
        Notice("At least " + std::to_string(files) + " files are to be " +
                   VerbForm(function, "encrypted") +
                   ".\r\nThis is twice as many as the maximum number of files\r\n"
                   "currently specified.\r\n"
                   "Either increase that number or consider whether\r\nyou wish to " +
                   VerbForm(function, "encrypt") + " this many files in a single operation.",
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
                                              DisplayName(operation.setup.FileName[Output]) +
                                              " produces duplicate output filenames!",
                                          "Error", BoxIcon::Exclamation));
        return false;
    }
    return true;
}

/// `journal` opened, or null where the operation does without.
OperationJournal* OpenJournal(const OperationContext& operation, OperationJournal& journal,
                              ReportScreen& screen) {
    const std::string& path = operation.machine.journalPath;
    if (path.empty()) return nullptr;
    if (journal.OpenNew(path)) return &journal;
    const bool inPlace = operation.setup.OutputMode == OutputTarget::OverwriteInput;
    screen.AppendToReport("Note: the file " + DisplayName(path) +
                          " cannot be written.  Should this operation be interrupted,\r\nthen " +
                          (inPlace ? "the next start of the program will not complete it."
                                   : "an unfinished result may be left.") +
                          "\r\n");
    return nullptr;
}

void WriteClosingSummary(const OperationContext& operation, ReportScreen& screen) {
    const std::string encrypted = VerbForm(operation.setup.Operation, "encrypted");
    const std::string processed =
        AfterText(static_cast<std::int64_t>(screen.counters.filesProcessed));
    std::string text = "\r\nNumber of files processed:" + processed + "\r\n" + "Number of files " +
                       encrypted + ":" + processed + "\r\nTotal KB " + encrypted + ": " +
                       KilobytesText(screen.counters.totalBytes) + "\r\n";
    if (const std::int64_t seconds = screen.ElapsedSeconds(); seconds > 0) {
        text += "Elapsed time: " +
                FormatDuration(static_cast<std::uint64_t>(seconds), DurationForm::Long) + "\r\n";
    }
    screen.AppendAlways(text);
}

/// Shows how far engine and purge are with a file, and lets the interface react, while it lives.
class ProgressShown {
  public:
    ProgressShown(Machine& machine, ReportScreen& screen) : machine_(machine) {
        const auto show = [&machine, &screen](std::uint64_t done, std::uint64_t total) {
            screen.ShowPass(done, total);
            machine.user.ProcessEvents();
        };
        machine.engine.SetProgress(show);
        machine.fileKit.SetProgress(Throttled(machine.clock, show));
    }
    ~ProgressShown() {
        machine_.engine.SetProgress({});
        machine_.fileKit.SetProgress({});
    }
    ProgressShown(const ProgressShown&) = delete;
    ProgressShown& operator=(const ProgressShown&) = delete;

  private:
    Machine& machine_;
};

} // namespace

std::string KilobytesText(std::uint64_t bytes) {
    return WithThousands(static_cast<double>(bytes) / 1024.0, bytes >= NoDecimalsFrom ? 0 : 2);
}

void RunOperation(const OperationContext& operation, ReportScreen& screen,
                  const ListingSummary& listing, const FileWork& work) {
    const Function function = operation.setup.Operation;
    if (!screen.IsRunning()) screen.BeginRun(function);
    screen.AppendToReport(ListingSummaryText(
        function, {FilesIn(operation.list), listing.wasCutShort, listing.randomness}));
    if (screen.IsFull()) {
        operation.machine.user.Ask(Notice("Textbox is full.  Report cannot continue.",
                                          "Textbox full", BoxIcon::Information));
        screen.Halt();
    } else if (!screen.StopRequested()) {
        WarnOfAntiVirusIn(operation);
        if (IsWithinTwiceTheMaximum(operation) && HasDistinctOutputs(operation)) {
            screen.AppendToReport("\r\n");
            const ProgressShown progress(operation.machine, screen);
            OperationJournal journal(operation.machine.fileSystem);
            OperationContext noted = operation;
            noted.journal = OpenJournal(operation, journal, screen);
            work(noted, screen);
        } else {
            screen.Halt();
        }
    }
    WriteClosingSummary(operation, screen);
    screen.EndRun();
}

} // namespace zr5
