#include "ui/unspoken_text.h"

#include <algorithm>
#include <array>
#include <QApplication>
#include <QKeyEvent>
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
    QAccessible::installActivationObserver(this);
    accessibilityActiveChanged(true);
    Silence& silence = TheSilence();
    if (silence.widgets.empty())
        silence.before = QAccessible::installUpdateHandler(PassOnUnlessSilenced);
    silence.widgets.push_back(&widget);
}

UnspokenText::~UnspokenText() {
    QAccessible::removeActivationObserver(this);
    Silence& silence = TheSilence();
    silence.widgets.erase(std::ranges::find(silence.widgets, &widget_));
    if (silence.widgets.empty()) QAccessible::installUpdateHandler(silence.before);
}

/// The filter that was installed last is asked first, and the toolkit's own comes with the first
/// listener.
void UnspokenText::accessibilityActiveChanged(bool /*active*/) {
    const auto comeFirst = [this] { QCoreApplication::instance()->installEventFilter(this); };
    comeFirst();
    QMetaObject::invokeMethod(this, comeFirst, Qt::QueuedConnection);
}

/// The toolkit hands on what comes from the keyboard only. A key that types is delivered to the
/// same window once more, as if the program had pressed it.
bool UnspokenText::eventFilter(QObject* watched, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (!isKey || !event->spontaneous() || !watched->isWindowType()) return false;
    const QWidget* focus = QApplication::focusWidget();
    const auto& key = static_cast<const QKeyEvent&>(*event);
    const bool types = !key.text().isEmpty() && key.text().front().isPrint() &&
                       !(key.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    if (!types || focus == nullptr || (focus != &widget_ && !widget_.isAncestorOf(focus))) {
        return false;
    }
    QKeyEvent again(key.type(), key.key(), key.modifiers(), key.nativeScanCode(),
                    key.nativeVirtualKey(), key.nativeModifiers(), key.text(), key.isAutoRepeat(),
                    static_cast<quint16>(key.count()));
    QCoreApplication::sendEvent(watched, &again);
    event->setAccepted(again.isAccepted());
    return true;
}

} // namespace zr5
