#include "operation/measure/randomness_of_pattern.h"

#include "files/folder_walk.h"
#include "operation/measure/randomness_report.h"
#include "setup/wording.h"
#include "util/display.h"
#include "util/paths.h"

namespace zr5 {
namespace {

/// Writes what is measured of each file that a walk meets.
class PatternVisitor : public WalkVisitor {
  public:
    PatternVisitor(Machine& machine, ReportScreen& screen) : machine_(machine), screen_(screen) {}

    void MeetFile(const std::string& path) override {
        const auto info = machine_.fileSystem.Info(path);
        FileRandomness file{InputSide, path, info ? info->lengthBytes : 0};
        screen_.BeginFile(DisplayName(SplitPath(path).name), file.lengthBytes, 1);
        file.value = MeasureWholeFile(machine_, path, screen_.PassProgress(),
                                      [this] { return screen_.StopRequested(); });
        screen_.EndFile(file.lengthBytes);
        if (file.value == RandomnessStopped) return;
        std::string text = WhyNoValue(file);
        if (text.empty()) text = SizeLine(file) + "\r\n" + RandomnessLine(file);
        screen_.AppendToReport(FileLine(file) + "\r\n" + text + "\r\n\r\n");
        if (screen_.IsFull()) screen_.RandomnessBufferFull();
    }

    bool GoesOn() override {
        machine_.user.ProcessEvents();
        return !screen_.StopRequested();
    }

  private:
    Machine& machine_;
    ReportScreen& screen_;
};

} // namespace

bool IsReportOfPattern(const OperationSetup& setup) {
    return setup.InputMode == InputSource::FilesInAFolder &&
           setup.EffectivePattern().find_first_of("?*") != std::string::npos;
}

void ReportRandomnessOfPattern(const OperationSetup& setup, Machine& machine, ReportScreen& screen,
                               const std::function<void()>& show) {
    const WalkRequest request{.folder = setup.Folder[InputSide],
                              .pattern = setup.EffectivePattern(),
                              .addsUpSizes = true};
    const StopAsked never = [] { return false; };
    ConsiderateVisitor counting(machine.user, never);
    const WalkResult found = WalkFolder(machine, request, counting);
    if (found.files == 0) {
        machine.user.Ask(Notice("There are no files in " + DisplayName(request.folder) +
                                    " matching " + DisplayName(request.pattern) + "." +
                                    UnreadableNote(found),
                                RandomnessReportTitle));
        return;
    }
    show();
    screen.BeginRun(PurposeOf(setup));
    screen.BeginFiles(found.files, found.totalBytes);
    PatternVisitor visitor(machine, screen);
    static_cast<void>(WalkFolder(machine, request, visitor));
    screen.EndRun();
}

} // namespace zr5
