#include "ui/unspoken_text.h"

#include <algorithm>
#include <array>
#include <QAccessible>
#include <vector>

namespace zr5 {
namespace {

/// The handler of the toolkit is a plain function, and so what it needs stands beside it.
struct Silence {
    std::vector<const QObject*> widgets;
    QAccessible::UpdateHandler before = nullptr; ///< null: the desktop's own
};

Silence& TheSilence() {
    static Silence silence;
    return silence;
}

/// The name of a label is its text.
constexpr std::array TellingText{QAccessible::TextInserted, QAccessible::TextRemoved,
                                 QAccessible::TextUpdated, QAccessible::ValueChanged,
                                 QAccessible::NameChanged};

bool IsSilenced(const QObject* object) {
    const auto& silenced = TheSilence().widgets;
    while (object != nullptr && std::ranges::find(silenced, object) == silenced.end())
        object = object->parent();
    return object != nullptr;
}

void PassOnUnlessSilenced(QAccessibleEvent* event) {
    const bool tellsText = std::ranges::count(TellingText, event->type()) > 0;
    if (tellsText && IsSilenced(event->object())) return;
    QAccessible::installUpdateHandler(TheSilence().before);
    QAccessible::updateAccessibility(event);
    QAccessible::installUpdateHandler(PassOnUnlessSilenced);
}

} // namespace

UnspokenText::UnspokenText(const QWidget& widget) : widget_(widget) {
    Silence& silence = TheSilence();
    if (silence.widgets.empty())
        silence.before = QAccessible::installUpdateHandler(PassOnUnlessSilenced);
    silence.widgets.push_back(&widget);
}

UnspokenText::~UnspokenText() {
    Silence& silence = TheSilence();
    silence.widgets.erase(std::ranges::find(silence.widgets, &widget_));
    if (silence.widgets.empty()) QAccessible::installUpdateHandler(silence.before);
}

} // namespace zr5
