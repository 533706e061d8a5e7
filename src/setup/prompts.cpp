#include "setup/prompts.h"

namespace zr5 {

MessageBox PromptBox(Prompt prompt, InputSource source) {
    const std::string word = source == InputSource::FilesInAFolder ? "folder" : "file";
    const auto box = [](const std::string& title, const std::string& text) {
        return Notice(text, title, BoxIcon::Information);
    };
    switch (prompt) {
    case Prompt::MissingInput:
        return box("Input " + word, "Please specify input " + word + ".");
    case Prompt::MissingOutput:
        return box("Output " + word, "Please specify output " + word + ".");
    case Prompt::SpecifyInput:
        return box("Specify " + word, "Please specify the input " + word + ".");
    case Prompt::SpecifyOutput:
        return box("Specify " + word, "Please specify the output " + word + ".");
    case Prompt::ChooseAnew:
        return box("Specify " + word, "The output of this setup does not fit its other options.\r\n"
                                      "Please select the input " +
                                          word + " anew, or clear the setup.");
    }
    return {};
}

MessageBox EmptyReportBox() {
    return Notice("The report screen is empty.", "Report screen", BoxIcon::Information);
}

} // namespace zr5
