#pragma once

#include <QDBusConnection>
#include <QObject>
#include <functional>

#include "app/platform/linux/BusQueryMonitor.h"

namespace tarnik {

// Whether programs let themselves be read and operated by others: what the accessibility bus says of itself.
// Main thread. Starts the accessibility bus, which only some desktops do by themselves.
class AccessibilityBus {
public:
    AccessibilityBus(const QDBusConnection& bus, std::function<void()> onChange);

    bool isOn() const { return isOn_; }
    bool isKnown() const { return isKnown_; }  // told as a change

    // For the whole session; starts the accessibility bus where it has ended. Tells, later, whether it did.
    void turnOn(std::function<void(bool done)> onDone);

private:
    void answered(const QDBusMessage& answer);

    const QDBusConnection bus_;
    const std::function<void()> onChange_;
    bool isOn_ = false;
    bool isKnown_ = false;
    BusQueryMonitor reading_;
    QObject context_;
};

}  // namespace tarnik
