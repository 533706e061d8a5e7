#pragma once

// The user, reached through the toolkit: message boxes, pickers, clipboard and web browser.

#include "ui/toolkit_dialogs.h"
#include "ui/work_window.h"
#include "util/user_port.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <QHash>
#include <QString>
#include <string>

namespace zr5 {

/// Boxes and pickers belong to the window that is active when they open. From the making of it on
/// the toolkit keeps no settings of this user, so that no picker leaves a trace.
class QtUserPort : public UserPort {
  public:
    QtUserPort();
    ~QtUserPort() override;
    Answer Ask(const MessageBox& box) override;
    [[nodiscard]] std::optional<std::string> PickFile(const FilePicker& picker) override;
    [[nodiscard]] std::optional<std::string> PickFolder(const FolderPicker& picker) override;
    void ProcessEvents() override;
    void WaitForEvents() override;
    void ShowWork(const LongWork& work) override;
    void EndWork() override;
    void CopyToClipboard(const std::string& text) override;
    [[nodiscard]] std::int32_t OpenAddress(const std::string& address) override;

    /// The program is to end: whatever stands open is left, and from now on nothing is shown. Every
    /// question has the answer that changes nothing; where there is none, Cancel.
    void EndQuestions();

  private:
    [[nodiscard]] std::optional<std::string> Run(NamePicker& dialog,
                                                 const std::string& startFolder);

    MessageBoxDresser dresser_;
    std::unique_ptr<WorkWindow> work_; ///< while work is shown
    bool questionsEnded_ = false;
    std::optional<DialogEnder> dialogEnder_; ///< once they have
    /// By the title of the picker, where the user was last with it: somebody who saves a setup is
    /// not to be led to the keyfile.
    QHash<QString, QString> lastFolders_;
};

} // namespace zr5
