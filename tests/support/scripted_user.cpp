#include "support/scripted_user.h"

#include <gtest/gtest.h>

namespace zr5::test {

ScriptedUser::~ScriptedUser() {
    EXPECT_TRUE(steps_.empty()) << steps_.size() << " scripted answers were never asked for";
}

ScriptedUser& ScriptedUser::Expect(std::string title, std::string text, Answer answer) {
    steps_.emplace_back(BoxStep{Notice(std::move(text), std::move(title)), false, answer});
    return *this;
}

ScriptedUser& ScriptedUser::Expect(MessageBox box, Answer answer) {
    steps_.emplace_back(BoxStep{std::move(box), true, answer});
    return *this;
}

Answer ScriptedUser::Ask(const MessageBox& box) {
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

std::optional<std::string> ScriptedUser::TakePick(const std::string& title, bool folder) {
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

} // namespace zr5::test
