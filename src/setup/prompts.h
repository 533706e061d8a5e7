#pragma once

// The prompts that lead the user to the next missing choice.

#include "setup/operation_setup.h"
#include "util/user_port.h"

namespace zr5 {

enum class Prompt {
    MissingInput,  ///< "Please specify input file."
    MissingOutput, ///< "Please specify output file."
    SpecifyInput,  ///< "Please specify the input file."
    SpecifyOutput, ///< "Please specify the output file."
    ChooseAnew,    ///< the output does not fit, and no control of the window is for it
};

/// The prompt's box; "file" becomes "folder" when the input is a folder.
[[nodiscard]] MessageBox PromptBox(Prompt prompt, InputSource source);

/// What "View report screen" says before there is a report.
[[nodiscard]] MessageBox EmptyReportBox();

} // namespace zr5
