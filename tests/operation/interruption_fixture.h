#pragma once

// Whole operations, in place and to another file, with a journal, the real engine and file kit,
// on a disk that a test can make to fail.

#include "libs/cipher/engine_fixture.h"
#include "libs/filekit/file_kit.h"
#include "operation/file_work.h"
#include "operation/interrupted_operation.h"
#include "operation/operation_run.h"
#include "support/scripted_user.h"

#include <algorithm>
#include <array>
#include <set>

namespace zr5::test {

using Names = std::set<std::string>;

/// One way through the program: in place, or to another file that is there already or not.
struct Way {
    Direction direction;
    bool elsewhere = false;
    bool overAnOutput = false;
};
inline constexpr std::array Ways = {
    Way{Direction::Encrypt},       Way{Direction::Decrypt},
    Way{Direction::Encrypt, true}, Way{Direction::Encrypt, true, true},
    Way{Direction::Decrypt, true}, Way{Direction::Decrypt, true, true}};

class Interruption : public EngineTest {
  protected:
    Interruption() {
        key.keyText = SecretBytes::CopyOf(Key);
        key.keyState = KeyState::Keyboard;
        user.onAsk = [this](const MessageBox& box) {
            boxes += box.text;
            return AnswerThatChangesNothing(box.buttons);
        };
        setup.FileName = {"a", "a"};
    }
    [[nodiscard]] std::string JournalPath() const { return config / "zr5e.journal"; }

    /// Works on `a` in place, without a journal.
    FileResult Process(Direction direction) {
        setup.Operation = direction;
        ReportScreen screen(user, clock);
        OperationJournal none(Disk());
        return ProcessInPlace({setup, key, list, machine, screen, none}, folder / "a", beforePurge);
    }
    /// Makes ready what an operation on `a` finds: nothing but `original`, plain or encrypted.
    void PrepareFor(const Way& way) {
        Disk().Reset();
        folder.Empty();
        input = way.direction == Direction::Encrypt ? original : Sealed(original);
        folder.Write("a", input);
        other.Empty();
        if (way.overAnOutput) other.Write("a", Old);
        boxes.clear();
        setup.Operation = way.direction;
        setup.OutputMode =
            way.elsewhere ? OutputTarget::SeparateOutput : OutputTarget::OverwriteInput;
        const TemporaryFolder& output = way.elsewhere ? other : folder;
        setup.Folder = {folder.Path(), output.Path()};
        list = {};
        list.AddFile(folder / "a", output / "a");
        agreed = System().Info(output / "a");
        Disk().Reset();
    }
    std::string Run() {
        ReportScreen screen(user, clock);
        running = &screen;
        OperationJournal journal(Disk());
        RunOperation({.setup = setup,
                      .key = key,
                      .list = list,
                      .machine = machine,
                      .screen = screen,
                      .journal = journal,
                      .replaceable = agreed});
        return screen.text();
    }
    void Start() { FinishInterruptedOperations(machine); }

    /// What a file decrypts to with the test's key; empty when it does not.
    static std::string Decrypted(const std::string& path) {
        Disk().Reset();
        const TemporaryFolder elsewhere;
        if (DecryptPath(path, elsewhere / "out") != EngineResult::Success) return {};
        return elsewhere.Read("out");
    }
    /// Whether the original is still to be had in full, as it was or encrypted, from some file.
    bool IsSafe() {
        return std::ranges::any_of(folder.Names(), [&](const std::string& name) {
            return folder.Read(name) == original || Decrypted(folder / name) == original;
        });
    }
    /// Whether nothing is lost: in place a complete file is somewhere, else the input is as it was
    /// and the output, if there is one, is the old one or complete, or `report` says otherwise.
    bool NothingIsLost(const Way& way, const std::string& report = {}) {
        if (!way.elsewhere) return IsSafe();
        if (folder.Names() != Names{"a"} || folder.Read("a") != input) return false;
        if (!other.Has("a")) return !way.overAnOutput;
        const bool isOld = way.overAnOutput && other.Read("a") == Old;
        return isOld || OutputIsComplete(way) || report.find("Partial") != std::string::npos;
    }
    bool OutputIsComplete(const Way& way) {
        const TemporaryFolder& output = way.elsewhere ? other : folder;
        if (way.direction == Direction::Decrypt) return output.Read("a") == original;
        return Decrypted(output / "a") == original;
    }
    /// Whether the files are such as a start of the program should leave them.
    bool IsMended(const Way& way) {
        const Names outputs = other.Names();
        return NothingIsLost(way) && folder.Names() == Names{"a"} && config.Names().empty() &&
               (outputs.empty() || outputs == Names{"a"});
    }
    /// What lies about that neither `told` nor the setup names.
    Names Unnamed(const std::string& told) const {
        Names unnamed;
        for (const TemporaryFolder* each : {&folder, &other}) {
            for (const std::string& name : each->Names()) {
                if (name != "a" && told.find(*each / name) == std::string::npos)
                    unnamed.insert(name);
            }
        }
        return unnamed;
    }

    static constexpr const char* Old = "what stood there before";
    std::string original = PatternBytes(3000);
    std::string input;
    std::string boxes; ///< what was said since the last preparation
    TemporaryFolder other;
    TemporaryFolder config;
    SystemRandom random;
    std::unique_ptr<FileKit> kit = MakeFileKit(Disk(), random);
    ScriptedUser user;
    StoppedClock clock;
    Machine machine{user, Disk(), Engine(), *kit, clock, random, "/usr/bin/zr5e", config.Path()};
    OperationSetup setup;
    CurrentKey key;
    WorkList list;
    std::optional<FileInfo> agreed; ///< the output that may be replaced
    std::function<void()> beforePurge;
    ReportScreen* running = nullptr; ///< of the last run
};

} // namespace zr5::test
