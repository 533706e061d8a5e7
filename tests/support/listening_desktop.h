#pragma once

// Turns on what tells assistive technology of events, which the toolkit leaves to a desktop. The
// offscreen platform has none, and so the toolkit's own switch, declared here, is pressed by hand.

#include <QAccessible>
#include <stdexcept>

class QPlatformAccessibility {
  public:
    void setActive(bool active);
};
class QPlatformIntegration {
  public:
    [[nodiscard]] QPlatformAccessibility* accessibility() const;
};
class QGuiApplicationPrivate {
  public:
    static QPlatformIntegration* platform_integration;
};

namespace zr5::test {

/// From here on `listen` is told of every accessible event. Throws where the switch does nothing.
inline void ListenToEvents(QAccessible::UpdateHandler listen) {
    QGuiApplicationPrivate::platform_integration->accessibility()->setActive(true);
    if (!QAccessible::isActive()) throw std::runtime_error("nothing tells of events");
    QAccessible::installUpdateHandler(listen);
}

/// The text that an event carries, or that it tells to ask for.
inline QString ToldBy(QAccessibleEvent& event) {
    switch (static_cast<int>(event.type())) {
    case QAccessible::TextInserted:
        return static_cast<QAccessibleTextInsertEvent&>(event).textInserted();
    case QAccessible::TextRemoved:
        return static_cast<QAccessibleTextRemoveEvent&>(event).textRemoved();
    case QAccessible::TextUpdated: {
        auto& update = static_cast<QAccessibleTextUpdateEvent&>(event);
        return update.textRemoved() + update.textInserted();
    }
    case QAccessible::NameChanged:
        return event.accessibleInterface()->text(QAccessible::Name);
    default:
        return {};
    }
}

} // namespace zr5::test
