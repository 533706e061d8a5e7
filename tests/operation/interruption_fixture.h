#pragma once

// Whole operations, in place and to another file, with a journal, the real engine and file kit,
// on a disk that a test can make to fail.

#include "libs/cipher/engine_fixture.h"
#include "libs/filekit/zr5_file_kit.h"
#include "operation/in_place.h"
#include "operation/interrupted_operation.h"
#include "operation/operation_run.h"
#include "support/scripted_user.h"

#include <algorithm>
#include <array>
#include <set>

namespace zr5::test {

using Names = std::set<std::string>;

/// One way through the program: in place, or to another file that is there already or not.
struct Road {
    Function function;
    bool elsewhere = false;
    bool overAnOutput = false;
};
inline constexpr std::array Roads = {
    Road{Function::Encrypt},       Road{Function::Decrypt},
    Road{Function::Encrypt, true}, Road{Function::Encrypt, true, true},
    Road{Function::Decrypt, true}, Road{Function::Decrypt, true, true}};

class Interruption : public EngineTest {
  protected:
    Interruption() {
        key.keyText = SecretBytes::CopyOf(Key);
        key.keyState = key_state::Keyboard;
        machine.journalPath = JournalPath();
        user.onAsk = [this](const MessageBox& box) {
            boxes += box.text;
            return AnswerThatChangesNothing(box.buttons);
        };
        setup.FileName = {"a", "a"};
    }
    [[nodiscard]] std::string JournalPath() const { return config / "zr5e.journal"; }

    /// Works on `a` in place, without a journal.
    FileResult Process(Function function) {
        setup.Operation = function;
        return ProcessInPlace({setup, key, list, machine, nullptr}, folder / "a",
                              {{}, beforePurge});
    }
    /// Makes ready what an operation on `a` finds: nothing but `original`, plain or encrypted.
    void PrepareFor(const Road& road) {
        Disk().Reset();
        folder.Empty();
        input = road.function == Function::Encrypt ? original : Sealed(original);
        folder.Write("a", input);
        other.Empty();
        if (road.overAnOutput) other.Write("a", Old);
        boxes.clear();
        setup.Operation = road.function;
        setup.OutputMode =
            road.elsewhere ? OutputTarget::SeparateOutput : OutputTarget::OverwriteInput;
        const TemporaryFolder& output = road.elsewhere ? other : folder;
        setup.Folder = {folder.Path(), output.Path()};
        list = {{WorkItem::Kind::File, folder / "a", output / "a"}};
        Disk().Reset();
    }
    /// The report of the operation.
    std::string Run() {
        ReportScreen screen(user, clock);
        RunOperation({setup, key, list, machine}, screen);
        return screen.text();
    }
    void Start() { FinishInterruptedOperations(Disk(), *kit, user, JournalPath()); }

    /// What a file decrypts to with the test's key; empty when it does not.
    static std::string Decrypted(const std::string& path) {
        Disk().Reset();
        const TemporaryFolder elsewhere;
        if (DecryptPath(path, elsewhere / "out") != 0) return {};
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
    bool NothingIsLost(const Road& road, const std::string& report = {}) {
        if (!road.elsewhere) return IsSafe();
        if (folder.Names() != Names{"a"} || folder.Read("a") != input) return false;
        if (!other.Has("a")) return !road.overAnOutput;
        const bool isOld = road.overAnOutput && other.Read("a") == Old;
        return isOld || OutputIsComplete(road) || report.find("Partial") != std::string::npos;
    }
    bool OutputIsComplete(const Road& road) {
        const TemporaryFolder& output = road.elsewhere ? other : folder;
        if (road.function == Function::Decrypt) return output.Read("a") == original;
        return Decrypted(output / "a") == original;
    }
    /// Whether the files are such as a start of the program should leave them.
    bool IsMended(const Road& road) {
        const Names outputs = other.Names();
        return NothingIsLost(road) && folder.Names() == Names{"a"} && config.Names().empty() &&
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
    Machine machine{Disk(), Engine(), *kit, user, clock, "/usr/bin/zr5e"};
    OperationSetup setup;
    CurrentKey key;
    WorkList list;
    std::function<void()> beforePurge;
};

} // namespace zr5::test
