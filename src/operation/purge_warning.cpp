#include "operation/purge_warning.h"

#include "operation/extension_lists.h"
#include "setup/verb_form.h"
#include "util/display.h"
#include "util/paths.h"

namespace zr5 {

bool PurgeWarning::IsDueFor(const std::string& path) const {
    return !suppressed_ && operation_ == Function::Encrypt &&
           IsPurgeSensitiveExtension(ExtensionOf(path));
}

std::string PurgeWarning::MessageFor(const std::string& path) const {
    return "The file " + DisplayName(path) + " has been " + VerbForm(operation_, "encrypted") +
           ".\r\n\r\n"
           "The file in its original form will now be purged "
           "(overwritten and deleted).  If Kaspersky Anti-Virus (or a similar "
           "utility) is active then it may or may not produce a warning message "
           "(once for each plaintext file which is purged).  "
           "If so, do not stop the operation but rather allow it to continue."
           "\r\n\r\n"
           "If some anti-virus software is running then it is advisable to disable it either "
           "before running Vaultline ZR5 or during a run (like now)."
           "\r\n\r\n"
           "For more secure purging of files Velmora Systems' Shredline is recommended\r\n"
           "(see Velmora Systems' web page for this product).";
}

} // namespace zr5
