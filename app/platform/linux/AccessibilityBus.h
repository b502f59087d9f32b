#pragma once

#include <QDBusConnection>
#include <QObject>
#include <functional>

#include "app/platform/linux/BusQueryMonitor.h"

namespace tarnik {

// Monitors whether accessibility is enabled in the session, as org.a11y.Status reports it. Starts the
// accessibility bus, because only some desktops start it by themselves. Main thread.
class AccessibilityBus {
public:
    // Calls `onChange` when isOn or isKnown changes.
    AccessibilityBus(const QDBusConnection& bus, std::function<void()> onChange);

    bool isOn() const { return isOn_; }
    bool isKnown() const { return isKnown_; }

    // Enables accessibility for the whole session, and starts the accessibility bus again if it ended. Calls
    // `onDone` later with whether that worked.
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
