#pragma once

// A user who answers exactly the questions a test expects: an unscripted question fails the
// test, and so does an answer that is left over.

#include "util/user_port.h"

#include <deque>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <variant>
#include <vector>

namespace zr5::test {

inline MessageBox OverwriteQuestion(const std::string& path) {
    return Question("Overwrite existing file " + path + "?", "File exists already.",
                    BoxIcon::Question, Answer::No);
}

class ScriptedUser : public UserPort {
  public:
    ~ScriptedUser() override {
        EXPECT_TRUE(steps_.empty()) << steps_.size() << " scripted answers were never asked for";
    }

    /// Expects a box with this title and this text, whole, and answers it.
    ScriptedUser& Expect(std::string title, std::string text, Answer answer = Answer::Ok) {
        steps_.emplace_back(BoxStep{Notice(std::move(text), std::move(title)), false, answer});
        return *this;
    }
    /// As above, and checks icon, buttons and default button too.
    ScriptedUser& Expect(MessageBox box, Answer answer = Answer::Ok) {
        steps_.emplace_back(BoxStep{std::move(box), true, answer});
        return *this;
    }
    /// Expects a file picker with this title; answers with a path, or cancels.
    ScriptedUser& ExpectFile(std::string title, std::optional<std::string> path) {
        steps_.emplace_back(PickStep{std::move(title), std::move(path), false});
        return *this;
    }
    ScriptedUser& ExpectFolder(std::string title, std::optional<std::string> path) {
        steps_.emplace_back(PickStep{std::move(title), std::move(path), true});
        return *this;
    }

    /// Answers every box, where it is set, instead of what is expected.
    std::function<Answer(const MessageBox&)> onAsk;
    /// Runs whenever the logic lets the interface process events.
    std::function<void()> onEvents;
    /// What OpenAddress answers, and what it was asked for.
    std::int32_t openAddressResult = 42;
    std::vector<std::string> openedAddresses;
    std::string clipboard;
    std::vector<MessageBox> asked; ///< every box shown, in order
    FilePicker lastPicker;
    std::vector<LongWork> shownWork; ///< each showing
    bool isWorkShown = false;

    Answer Ask(const MessageBox& box) override {
        asked.push_back(box);
        if (onAsk) return onAsk(box);
        const auto* step = steps_.empty() ? nullptr : std::get_if<BoxStep>(&steps_.front());
        if (step == nullptr) {
            ADD_FAILURE() << "unscripted box \"" << box.title << "\": " << box.text;
            return AnswerThatChangesNothing(box.buttons);
        }
        EXPECT_EQ(box.title, step->box.title);
        EXPECT_EQ(box.text, step->box.text);
        if (step->checksStyle) {
            EXPECT_EQ(box.icon, step->box.icon) << box.text;
            EXPECT_EQ(box.buttons, step->box.buttons) << box.text;
            EXPECT_EQ(box.defaultButton, step->box.defaultButton) << box.text;
        }
        const Answer answer = step->answer;
        steps_.pop_front();
        return answer;
    }
    std::optional<std::string> PickFile(const FilePicker& picker) override {
        lastPicker = picker;
        return TakePick(picker.title, false);
    }
    std::optional<std::string> PickFolder(const FolderPicker& picker) override {
        return TakePick(picker.title, true);
    }
    void ProcessEvents() override {
        if (onEvents) onEvents();
    }
    void ShowWork(const LongWork& work) override {
        EXPECT_LE(work.doneBytes, work.totalBytes);
        shownWork.push_back(work);
        isWorkShown = true;
        ProcessEvents();
    }
    void EndWork() override { isWorkShown = false; }
    void CopyToClipboard(const std::string& text) override { clipboard = text; }
    std::int32_t OpenAddress(const std::string& address) override {
        openedAddresses.push_back(address);
        return openAddressResult;
    }

  private:
    struct BoxStep {
        MessageBox box;
        bool checksStyle;
        Answer answer;
    };
    struct PickStep {
        std::string title;
        std::optional<std::string> path;
        bool folder;
    };
    std::optional<std::string> TakePick(const std::string& title, bool folder) {
        const auto* step = steps_.empty() ? nullptr : std::get_if<PickStep>(&steps_.front());
        if (step == nullptr || step->folder != folder) {
            ADD_FAILURE() << "unscripted picker \"" << title << '"';
            return std::nullopt;
        }
        EXPECT_EQ(title, step->title);
        auto path = step->path;
        steps_.pop_front();
        return path;
    }

    std::deque<std::variant<BoxStep, PickStep>> steps_;
};

} // namespace zr5::test
