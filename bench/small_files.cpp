// Many small files, encrypted in place, overwritten and flushed, through the report window, beside
// a bare loop that makes the same system calls without encrypting, in rounds. Usage: FOLDER [ROUNDS
// [FILES ...]]

#include "figures.h"
#include "libs/cipher/cipher_engine.h"
#include "libs/filekit/file_kit.h"
#include "libs/system/random.h"
#include "operation/file_listing.h"
#include "operation/operation_run.h"
#include "operation/work_list.h"
#include "ui/qt_user_port.h"
#include "ui/report_window.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <QApplication>
#include <string>
#include <vector>

namespace {

using namespace zr5;

constexpr std::size_t FileBytes = 4096;
constexpr std::size_t SealedBytes = EncryptedLength(FileBytes);
constexpr std::size_t JournalBytes = 400;
constexpr std::size_t FilesInFolder = 500;
constexpr std::size_t MostFiles = 10'000;

double Seconds(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// What the interface takes of a run: the window with its text, and the events of the desktop.
double interfaceSeconds = 0;

class TimedUser final : public QtUserPort {
  public:
    void ProcessEvents() override {
        interfaceSeconds += Seconds([this] { QtUserPort::ProcessEvents(); });
    }
};

class TimedReport final : public ReportWindow {
  public:
    using ReportWindow::ReportWindow;
    void TextAppended(std::string_view text) override {
        interfaceSeconds += Seconds([&] { ReportWindow::TextAppended(text); });
    }
    void TextRemoved(std::string_view text) override {
        interfaceSeconds += Seconds([&] { ReportWindow::TextRemoved(text); });
    }
    void StateChanged() override {
        interfaceSeconds += Seconds([this] { ReportWindow::StateChanged(); });
    }
};

void MakeFiles(const std::string& folder, std::size_t count) {
    std::filesystem::remove_all(folder);
    const std::string content(FileBytes, 'x');
    for (std::size_t i = 0; i < count; ++i) {
        const std::string sub = folder + "/" + std::to_string(i / FilesInFolder);
        std::filesystem::create_directories(sub);
        std::ofstream(sub + "/" + std::to_string(i) + ".dat", std::ios::binary) << content;
    }
}

void Check(FsStatus status) {
    if (status != FsStatus::Ok) std::perror("bare loop");
}

/// What an in-place encryption asks of the disk, without the cipher and without the report.
void BareFile(FileSystem& disk, OpenFile& journal, const std::string& path,
              std::vector<std::byte>& buffer) {
    const auto note = [&] {
        Check(journal.MoveTo(0));
        Check(journal.Write(std::span(buffer).first(JournalBytes)));
    };
    const auto noteInOrder = [&] {
        note();
        journal.StartWriteback(0, JournalBytes);
        journal.AwaitWriteback(0, JournalBytes);
    };
    const std::string part = path + ".part";
    const std::string done = path + ".done";
    {
        const OpenResult input = disk.OpenForReading(path);
        noteInOrder();
        const OpenResult output = disk.CreateExclusively(part);
        Check(output.file->Reserve(SealedBytes));
        static_cast<void>(input.file->Read(std::span(buffer).first(FileBytes)));
        Check(output.file->Write(std::span(buffer).first(SealedBytes)));
        Check(output.file->CopyAttributesFrom(*input.file));
        Check(output.file->Flush());
    }
    noteInOrder();
    Check(disk.RenameWithoutReplacing(part, done));
    Check(disk.FlushFolderOf(done));
    { // reading back
        const OpenResult plain = disk.OpenForReading(path);
        const OpenResult sealed = disk.OpenForReading(done);
        sealed.file->ForgetCached(0, 0);
        static_cast<void>(sealed.file->Read(std::span(buffer).first(SealedBytes)));
        static_cast<void>(plain.file->Read(std::span(buffer).first(FileBytes)));
    }
    {
        const OpenResult input = disk.OpenForPurging(path);
        note();
        Check(journal.FlushContent());
        Check(input.file->Write(std::span(buffer).first(FileBytes)));
        Check(input.file->Flush());
    }
    Check(disk.Remove(path));
    Check(disk.RenameWithoutReplacing(done, path));
    Check(disk.FlushFolderOf(path));
    note();
}

struct Figures {
    std::vector<double> listing; ///< s
    std::vector<double> program; ///< s, as all below
    std::vector<double> interface;
    std::vector<double> bare;
    std::vector<double> ratio;
};

/// Lists the files and takes them through a whole operation; false when one was not processed.
bool RunProgram(const std::string& folder, std::size_t count, Figures& figures) {
    SystemClock clock;
    SystemRandom random;
    const auto disk = MakeSystemFileSystem();
    const auto engine = MakeCipherEngine(*disk, clock, random);
    const auto kit = MakeFileKit(*disk, random);
    if (!engine->allocate_buffers()) return false;
    TimedUser user;
    Machine machine{user, *disk, *engine, *kit, clock, random, "/proc/self/exe", folder + "-"};
    ReportScreen screen(user, clock);
    TimedReport window(screen, [] { return false; });
    CurrentKey key;
    key.keyText = SecretBytes::CopyOf(std::string_view("CORRECTHORSEBATTERYSTAPLE"));
    key.keyState = KeyState::Keyboard;
    OperationSetup setup;
    setup.InputMode = InputSource::FilesInAFolder;
    setup.SubfolderAnswer = true;
    setup.MaxNumFiles = 10'000;
    setup.Folder = {folder + "/", folder + "/"};

    MakeFiles(folder, count);
    window.ShowAtEnd();
    figures.listing.push_back(Seconds([&] {
        static_cast<void>(ListFiles(
            setup, machine, screen, "", [] { return false; }, [] {}));
    }));
    OperationTotals totals;
    interfaceSeconds = 0;
    figures.program.push_back(Seconds([&] {
        const ListedFiles listed = MakeWorkList(
            setup, machine, [](std::uint64_t) {}, [] { return false; });
        OperationJournal journal(*disk);
        RunOperation(
            {setup, key, listed.list, machine, screen, journal},
            {0, listed.wasCutShort, listed.randomness},
            [&](const OperationContext& operation) { return totals = ProcessFiles(operation); });
    }));
    figures.interface.push_back(interfaceSeconds / figures.program.back());
    return totals.filesProcessed == count;
}

void RunBareLoop(const std::string& folder, std::size_t count, Figures& figures) {
    const auto disk = MakeSystemFileSystem();
    MakeFiles(folder, count);
    std::vector<std::byte> buffer(SealedBytes);
    const std::string journalPath = folder + ".journal";
    figures.bare.push_back(Seconds([&] {
        const OpenResult journal = disk->OpenLocked(journalPath);
        Check(journal.file->Write(std::vector<std::byte>(2 * FileBytes)));
        Check(journal.file->Flush());
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
            if (entry.is_regular_file()) {
                BareFile(*disk, *journal.file, entry.path().native(), buffer);
            }
        }
    }));
    std::filesystem::remove(journalPath);
}

/// Microseconds that a file costs the program, beyond what the operation costs once.
double Compare(const std::string& folder, std::size_t count, std::size_t rounds) {
    Figures figures;
    bool complete = true;
    for (std::size_t i = 0; i < rounds; ++i) {
        if (i % 2 == 1) RunBareLoop(folder, count, figures);
        complete = RunProgram(folder, count, figures) && complete;
        if (i % 2 == 0) RunBareLoop(folder, count, figures);
        figures.ratio.push_back(figures.program.back() / figures.bare.back());
    }
    std::filesystem::remove_all(folder);
    const auto perFile = [&](double seconds) { return seconds * 1e6 / static_cast<double>(count); };
    const double program = perFile(bench::Median(figures.program));
    const double listing = bench::Median(figures.listing);
    const double ratio = bench::Median(figures.ratio);
    std::printf("| %6zu | %9.3f | %10.0f | %10.0f | %5.2f |%s\n", count, listing, program,
                perFile(bench::Median(figures.bare)), ratio,
                complete ? "" : " (not all processed!)");
    if (count == MostFiles) {
        bench::PrintFigure("10,000 files of 4 KiB in place, times a bare loop", "at most 1.5",
                           ratio, complete && ratio <= 1.5);
        const double drawing = bench::Median(figures.interface);
        const std::string where = QGuiApplication::platformName().toStdString();
        bench::PrintFigure(("interface, part of that run (" + where + ")").c_str(), "at most 0.15",
                           drawing, drawing <= 0.15);
        bench::PrintFigure("listing 10,000 files, s", "at most 0.5", listing, listing <= 0.5);
    }
    std::fflush(stdout);
    return program;
}

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const std::string folder = std::string(argc > 1 ? argv[1] : "/tmp") + "/zr5-small-files";
    const std::size_t rounds = argc > 2 ? std::stoul(argv[2]) : 5;
    std::vector<std::size_t> counts;
    for (int i = 3; i < argc; ++i) {
        counts.push_back(std::stoul(argv[i]));
    }
    if (counts.empty()) counts = {100, 1000, MostFiles};
    std::printf("Medians of %zu rounds\n\n"
                "| files  | listing, s | program, us/file | bare loop, us/file | ratio |\n"
                "|---|---|---|---|---|\n",
                rounds);
    std::vector<double> perFile;
    for (const std::size_t count : counts) {
        perFile.push_back(Compare(folder, count, rounds));
    }
    const double growth = perFile.back() / perFile.front();
    bench::PrintFigure("cost of a file among 10,000, times that among 100", "flat", growth,
                       growth <= 1.2);
}
