#pragma once

// Whole operations, in place and to another file, with a journal, that a test can interrupt.

#include "operation/in_place_fixture.h"
#include "operation/interrupted_operation.h"
#include "operation/operation_run.h"

namespace zr5::test {

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

class Interruption : public InPlace {
  protected:
    Interruption() {
        machine.journalPath = JournalPath();
        user.onAsk = [this](const MessageBox& box) {
            boxes += box.text;
            return AnswerThatChangesNothing(box.buttons);
        };
        setup.FileName = {"a", "a"};
    }
    [[nodiscard]] std::string JournalPath() const { return config / "zr5e.journal"; }

    /// Makes ready what an operation on `a` finds.
    void PrepareFor(const Road& road) {
        Prepare(road.function, original);
        input = folder.Read("a");
        other.Empty();
        if (road.overAnOutput) other.Write("a", Old);
        boxes.clear();
        setup.Operation = road.function;
        setup.OutputMode =
            road.elsewhere ? OutputTarget::SeparateOutput : OutputTarget::OverwriteInput;
        const TemporaryFolder& output = road.elsewhere ? other : folder;
        setup.Folder = {folder.Path(), output.Path()};
        list = {{WorkItem::Kind::File, folder / "a", output / "a"}};
    }
    /// The report of the operation.
    std::string Run() {
        ReportScreen screen(user, clock);
        RunOperation({setup, key, list, machine}, screen);
        return screen.text();
    }
    void Start() { FinishInterruptedOperations(Disk(), *kit, user, JournalPath()); }

    /// Whether nothing is lost: in place a complete file is somewhere, else the input is as it was
    /// and the output, if there is one, is the old one or complete, or `report` says otherwise.
    bool NothingIsLost(const Road& road, const std::string& report = {}) {
        if (!road.elsewhere) return IsSafe(original);
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
};

} // namespace zr5::test
