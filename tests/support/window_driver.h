#pragma once

// Drives windows by the names of their controls, as a user would by their captions.

#include <functional>
#include <QApplication>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <stdexcept>

namespace zr5::test {

/// The control of this name in `window`; throws when there is none.
template <typename Widget = QWidget>
Widget& Control(const QObject& window, const char* name) {
    auto* found = window.findChild<Widget*>(QLatin1String(name));
    if (found == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return *found;
}

inline void Press(const QWidget& window, const char* name) {
    QTest::mouseClick(&Control(window, name), Qt::LeftButton);
}

/// Calls `act` as soon as a modal window of this object name is open. `owner` must live until
/// then; its end ends the waiting.
inline void WhenDialogOpens(QObject& owner, const char* name, std::function<void(QWidget&)> act) {
    constexpr int PollMs = 10;
    auto* poll = new QTimer(&owner);
    const QString wanted = QString::fromLatin1(name);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, wanted, act = std::move(act)] {
        QWidget* window = QApplication::activeModalWidget();
        if (window == nullptr || window->objectName() != wanted) return;
        poll->stop();
        poll->deleteLater();
        act(*window);
    });
    poll->start(PollMs);
}

inline QWidget* TopWindow(const char* name) {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->objectName() == QLatin1String(name)) return window;
    return nullptr;
}

} // namespace zr5::test
