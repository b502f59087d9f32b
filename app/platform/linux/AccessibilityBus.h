#pragma once

#include <QDBusConnection>
#include <QObject>
#include <functional>

#include "app/platform/linux/BusQueryMonitor.h"

namespace tarnik {

// Monitors the property of org.a11y.Status that states whether accessibility is enabled in the session.
// Starts the accessibility bus, because some desktops don't start it. Main thread only.
class AccessibilityBus {
public:
    // Calls `onChange` when isOn or isKnown changes.
    AccessibilityBus(const QDBusConnection& bus, std::function<void()> onChange);

    bool isOn() const { return isOn_; }
    bool isKnown() const { return isKnown_; }

    // Enables accessibility for the whole session. Starts the accessibility bus if it has ended. Calls
    // `onDone` later with true on success.
    void turnOn(std::function<void(bool done)> onDone);

private:
    void replied(const QDBusMessage& reply);

    const QDBusConnection bus_;
    const std::function<void()> onChange_;
    bool isOn_ = false;
    bool isKnown_ = false;
    BusQueryMonitor monitor_;
    QObject context_;
};

}  // namespace tarnik
