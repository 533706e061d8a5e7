#pragma once

// Turns on what tells assistive technology of events, which the toolkit leaves to a desktop. The
// offscreen platform has none, and so the toolkit's own switch, declared here, is pressed by hand.

#include <QAccessible>
#include <stdexcept>

struct QPlatformAccessibility {
    void setActive(bool active);
};
struct QPlatformIntegration {
    [[nodiscard]] QPlatformAccessibility* accessibility() const;
};
struct QGuiApplicationPrivate {
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
    if (const auto* insert = dynamic_cast<QAccessibleTextInsertEvent*>(&event))
        return insert->textInserted();
    if (const auto* removal = dynamic_cast<QAccessibleTextRemoveEvent*>(&event))
        return removal->textRemoved();
    if (const auto* update = dynamic_cast<QAccessibleTextUpdateEvent*>(&event))
        return update->textRemoved() + update->textInserted();
    const bool isNamed = event.type() == QAccessible::NameChanged;
    return isNamed ? event.accessibleInterface()->text(QAccessible::Name) : QString();
}

} // namespace zr5::test
