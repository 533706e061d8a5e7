#include "operation/checks.h"

#include "setup/verb_form.h"
#include "util/program_text.h"

namespace zr5 {
namespace {

constexpr std::int16_t OutputIsInputText = 50;

bool OutputIsInput(const OperationSetup& setup, FileSystem& fileSystem) {
    return setup.InputMode == InputSource::SingleFile &&
           setup.OutputMode == OutputTarget::SeparateOutput && !setup.FileName[Output].empty() &&
           SameFile(fileSystem, setup.FilePath(Input), setup.FilePath(Output));
}

} // namespace

bool MayStart(const OperationSetup& setup, const CurrentKey& key, Machine& machine,
              ConfirmationView& view) {
    UserPort& user = machine.user;
    const auto refuse = [&](const MessageBox& box) {
        user.Ask(box);
        return false;
    };
    if (OutputIsInput(setup, machine.fileSystem)) {
        return refuse(Notice(GetProgramText(machine.fileKit, OutputIsInputText),
                             PerformCaption(setup.Operation), BoxIcon::Information));
    }
    if (!key.IsHeld()) {
        return refuse(
            Notice("Please specify the " + VerbForm(setup.Operation, "encryption") + " key.",
                   VerbForm(setup.Operation, "Encryption") + " key not specified"));
    }
    if (setup.OutputMode == OutputTarget::SeparateOutput && setup.FileName[Output].empty()) {
        return refuse(Notice("Output file not specified.", "Output file"));
    }
    return view.Confirm(ConfirmationFor(setup, key, SingleFileList(setup).size()));
}

WorkList SingleFileList(const OperationSetup& setup) {
    const bool inPlace = setup.OutputMode == OutputTarget::OverwriteInput;
    const std::string input = setup.FilePath(Input);
    return {{WorkItem::Kind::File, input, inPlace ? input : setup.FilePath(Output)}};
}

} // namespace zr5
