#pragma once

// The one door through which logic asks the user and reaches the desktop. `ui` opens it with
// real boxes; tests script it; with no user it gives the answer that changes nothing.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace zr5 {

enum class BoxIcon { None, Information, Question, Exclamation, Critical };
enum class BoxButtons { Ok, YesNo, YesNoCancel, RetryCancel };
enum class Answer { Ok, Yes, No, Cancel, Retry };

/// A modal message box. Texts are UTF-8 with CR LF line ends.
struct MessageBox {
    std::string text;
    std::string title;
    BoxIcon icon = BoxIcon::None;
    BoxButtons buttons = BoxButtons::Ok;
    Answer defaultButton = Answer::Ok;
    /// Closing the box is no answer: both buttons change something.
    bool mustBeAnswered = false;
};

/// What the user gets by closing a box without pressing a button: the answer that changes
/// nothing.
[[nodiscard]] constexpr Answer AnswerThatChangesNothing(BoxButtons buttons) noexcept {
    switch (buttons) {
    case BoxButtons::Ok:
        return Answer::Ok;
    case BoxButtons::YesNo:
        return Answer::No;
    case BoxButtons::YesNoCancel:
    case BoxButtons::RetryCancel:
        return Answer::Cancel;
    }
    return Answer::Cancel;
}

/// A file picker. `filter` is shown as given but lets every name through.
struct FilePicker {
    enum class Kind { Open, Save };
    Kind kind = Kind::Open;
    std::string title;
    std::string filter;
    std::string startFolder; ///< empty: where the user was with this title; home at first
    bool asksBeforeOverwriting = false; ///< the picker's own question, for Kind::Save
    std::string suggestedName{};        ///< stands in the name box at first
};

struct FolderPicker {
    std::string title;
    std::string startFolder;
};

/// Work that takes long, as the user sees it.
struct LongWork {
    std::string text; ///< what is being done
    std::uint64_t doneBytes = 0;
    std::uint64_t totalBytes = 0; ///< 0: nobody knows how much there is to do
    /// What the button Stop does; without it the work cannot be stopped.
    std::function<void()> stop{};
};

class UserPort {
  public:
    virtual ~UserPort() = default;
    /// Cancel, whatever the buttons, for a box that is left without an answer because the program
    /// is to end, where no button changes nothing.
    virtual Answer Ask(const MessageBox& box) = 0;
    /// The native path chosen, which need not exist: what stood in the name box, in the folder
    /// shown unless it was a whole path. Empty when the user cancelled. No picker opens a file.
    [[nodiscard]] virtual std::optional<std::string> PickFile(const FilePicker& picker) = 0;
    [[nodiscard]] virtual std::optional<std::string> PickFolder(const FolderPicker& picker) = 0;
    /// Lets the interface repaint and react to the user.
    virtual void ProcessEvents() = 0;
    /// As ProcessEvents, but first sleeps until something happens; for loops that wait for the
    /// user.
    virtual void WaitForEvents() { ProcessEvents(); }
    /// Shows what is being done and how far it is, in a window of its own, until EndWork; called
    /// again and again, and windows are repainted meanwhile. Work that can be stopped is stopped
    /// by closing that window, too, and leaves the other windows as they are. While there is other
    /// work, the window cannot be closed and the others take no input. A port without windows
    /// shows nothing.
    virtual void ShowWork(const LongWork& /*work*/) {}
    virtual void EndWork() {}
    virtual void CopyToClipboard(const std::string& text) = 0;
    /// Opens an address in the desktop's web browser. Above 32 on success, else an error code
    /// (2 not found, 8 out of memory, 31 no program for this kind of file).
    [[nodiscard]] virtual std::int32_t OpenAddress(const std::string& address) = 0;
};

/// A box with an OK button.
[[nodiscard]] inline MessageBox Notice(std::string text, std::string title,
                                       BoxIcon icon = BoxIcon::None) {
    return {std::move(text), std::move(title), icon, BoxButtons::Ok, Answer::Ok};
}
/// A Yes/No question.
[[nodiscard]] inline MessageBox Question(std::string text, std::string title,
                                         BoxIcon icon = BoxIcon::Question,
                                         Answer defaultButton = Answer::Yes) {
    return {std::move(text), std::move(title), icon, BoxButtons::YesNo, defaultButton};
}

/// A Yes/No question that cannot be passed by.
[[nodiscard]] inline MessageBox MustAnswer(std::string text, std::string title) {
    MessageBox box = Question(std::move(text), std::move(title));
    box.mustBeAnswered = true;
    return box;
}

} // namespace zr5
