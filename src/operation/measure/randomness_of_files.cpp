#include "operation/measure/randomness_of_files.h"

#include "operation/measure/randomness_report.h"
#include "util/display.h"
#include "util/paths.h"

namespace zr5 {
namespace {

/// Why a file that is no failure of its own kind could not be measured.
std::string WhyNotRead(FileSystem& fileSystem, const std::string& path) {
    switch (fileSystem.OpenForReading(path).status) {
    case FsStatus::NotFound:
        return "It is not there any more.";
    case FsStatus::NotPermitted:
        return "You are not permitted to read it.";
    case FsStatus::NotRegularFile:
        return "It is not a regular file.";
    case FsStatus::Ok:
    case FsStatus::AlreadyExists:
    case FsStatus::NoSpace:
    case FsStatus::TooLarge:
    case FsStatus::IoError:
        break;
    }
    return "Read error.";
}

class Report {
  public:
    Report(Machine& machine, ReportScreen& screen) : machine_(machine), screen_(screen) {}

    void Add(const ListedFile& listed) {
        const auto info = machine_.fileSystem.Info(listed.path);
        FileRandomness file{InputSide, listed.path, info ? info->lengthBytes : 0};
        screen_.BeginFile(DisplayName(SplitPath(file.path).name), file.lengthBytes, 1);
        file.value = MeasureWholeFile(machine_, file.path, screen_.PassProgress(),
                                      [this] { return screen_.StopRequested(); });
        screen_.EndFile(listed.lengthBytes);
        if (file.value == RandomnessStopped) return;
        NameFolder(SplitPath(file.path).folder);
        screen_.AppendToReport(FileLine(file) + "\r\n" + Result(file) + "\r\n\r\n");
        ++files_;
    }
    [[nodiscard]] std::uint64_t Files() const { return files_; }

  private:
    /// Names alone do not tell the files of several folders apart.
    void NameFolder(const std::string& folder) {
        if (folder == folder_) return;
        folder_ = folder;
        screen_.AppendToReport(DisplayName(folder) + "\r\n\r\n");
    }

    std::string Result(const FileRandomness& file) {
        const std::string noValue = WhyNoValue(file);
        if (noValue.empty()) return SizeLine(file) + "\r\n" + RandomnessLine(file);
        if (file.value == RandomnessTooSmall) return noValue;
        return noValue + "\r\n" + WhyNotRead(machine_.fileSystem, file.path);
    }

    Machine& machine_;
    ReportScreen& screen_;
    std::string folder_;
    std::uint64_t files_ = 0;
};

} // namespace

void ReportRandomnessOfFiles(const std::vector<ListedFile>& files, Machine& machine,
                             ReportScreen& screen) {
    std::uint64_t totalBytes = 0;
    for (const ListedFile& file : files)
        totalBytes += file.lengthBytes;
    screen.ContinueWithRun();
    screen.BeginFiles(files.size(), totalBytes);
    screen.AppendToReport(std::string("\r\n") + RandomnessReportTitle + "\r\n\r\n");
    Report report(machine, screen);
    for (const ListedFile& file : files) {
        machine.user.ProcessEvents();
        screen.PauseStep();
        if (screen.StopRequested()) break;
        report.Add(file);
        if (screen.IsFull()) {
            screen.RandomnessBufferFull();
            return screen.EndRun();
        }
    }
    screen.AppendAlways("Number of files reported: " + std::to_string(report.Files()) + " of " +
                        std::to_string(files.size()) + "\r\n");
    screen.EndRun();
}

} // namespace zr5
