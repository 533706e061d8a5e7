#include "report_states.h"

#include "libs/system/clock.h"
#include "operation/report/file_result.h"
#include "operation/report/report_screen.h"
#include "ui/qt_user_port.h"
#include "ui/report_window.h"
#include "ui/text_edges.h"

#include <QApplication>
#include <QPalette>
#include <QTest>
#include <string>
#include <vector>

namespace zr5 {
namespace {

/// Until what was gathered is drawn.
constexpr int GatheringMs = 150;

using Results = std::vector<std::pair<std::string, FileResult>>;

FileResult Failed(EngineResult result) {
    return FileResult::OfEngine(result, {});
}

/// Names of documents, the first ones with a result of their own.
Results Files(std::size_t count, const std::vector<FileResult>& first) {
    Results files;
    for (std::size_t i = 0; i < count; ++i) {
        std::string name = "Letter " + std::to_string(i + 1) + ".odt";
        if (i == 3) name = std::string(140, 'n') + ".odt";
        files.emplace_back(name, i < first.size() ? first[i] : FileResult{.outputPath = name});
    }
    return files;
}

FileResult Damaged() {
    FileResult result =
        FileResult::OfEngine(EngineResult::CorruptEndPartial, "Letter 2.odt.partial");
    result.damage.lost = {{65'536, 131'072}, {1'048'576, 65'536}};
    result.damage.lostStretches = 2;
    result.damage.wrongEnd = WrongEnd{Side::End, 512};
    return result;
}

void Write(ReportScreen& screen, const Results& files, std::size_t until) {
    screen.BeginFiles(files.size(), files.size() * 1000);
    screen.BeginOutcome("decrypted", "failed", files.size());
    for (std::size_t i = 0; i < until; ++i) {
        const auto& [name, result] = files[i];
        screen.BeginFile(name, 1000, 1);
        screen.BeginEntry();
        screen.AppendToReport("  " + name + " 1,000 bytes   " +
                              ResultText(result, name, Direction::Decrypt, 800));
        screen.EndEntry(result.Kind());
        screen.AppendToReport("\r\n");
        screen.EndFile(1000);
    }
}

enum class End { Done, Stopped, Running };

void Draw(const std::filesystem::path& folder, const std::string& name, const Results& files,
          End end) {
    QtUserPort user;
    SystemClock clock;
    ReportScreen screen(user, clock);
    ReportWindow window(screen, [] { return false; });
    screen.BeginRun(Purpose::Decrypt);
    screen.AppendToReport("Number of files: " + std::to_string(files.size()) + "\r\n\r\n");
    window.ShowAtEnd();
    Write(screen, files, end == End::Done ? files.size() : files.size() / 2);
    if (end == End::Stopped) screen.Halt();
    if (end != End::Running) screen.EndRun();
    window.TextAppended({});
    QTest::qWait(GatheringMs);
    window.grab().save(ToQt((folder / (name + ".png")).string()));
    if (end == End::Running) screen.EndRun();
}

QPalette Dark() {
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(0x2b, 0x2b, 0x2e));
    dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x20));
    dark.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3e));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        dark.setColor(role, QColor(0xee, 0xee, 0xee));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        dark.setColor(QPalette::Disabled, role, QColor(0x80, 0x80, 0x80));
    return dark;
}

} // namespace

void DrawReportStates(const std::filesystem::path& folder) {
    const QPalette light = QApplication::palette();
    const FileResult wrongKey = Failed(EngineResult::WrongKeyOrCorrupt);
    for (const std::string theme : {"light", "dark"}) {
        QApplication::setPalette(theme == "dark" ? Dark() : light);
        const auto draw = [&](const char* name, const Results& files, End end = End::Done) {
            Draw(folder, std::string("report-") + name + "-" + theme, files, end);
        };
        draw("all-good", Files(12, {}));
        draw("some-failed", Files(12, {wrongKey, Damaged(), {.outcome = Outcome::IsEmpty}}));
        draw("all-failed", Files(12, std::vector(12, wrongKey)));
        draw("stopped", Files(12, {}), End::Stopped);
        draw("running", Files(10'000, {wrongKey}), End::Running);
        draw("many", Files(10'000, {wrongKey}));
    }
    QApplication::setPalette(light);
}

} // namespace zr5
