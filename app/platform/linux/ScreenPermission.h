#pragma once

#include <QDBusConnection>
#include <QObject>
#include <functional>
#include <optional>

#include "app/platform/linux/BusQueryMonitor.h"

namespace tarnik {

// Monitors whether the portal's permission store allows this program to take screenshots. Off if the portal
// has no Screenshot interface. Permissions for recordings are ignored, because each is for one recording and
// is not stored in a readable place.
//
// Main thread. Starts the portal and its store, because only some desktops start them by themselves.
class ScreenPermission {
public:
    // Calls `onChange` when isOn or isKnown changes.
    ScreenPermission(const QDBusConnection& bus, std::function<void()> onChange);

    bool isOn() const { return hasScreenshots_ && stored_.value_or(wasGranted_); }
    bool isKnown() const { return isKnown_; }

    // Reports the user's answer to a prompt. It applies to this run if no store records it, as on older
    // desktops.
    void prompted(bool granted);

private:
    template <class Change>
    void apply(Change change);

    const std::function<void()> onChange_;
    bool hasScreenshots_ = false;
    std::optional<bool> stored_;
    bool wasGranted_ = false;
    bool isKnown_ = false;
    BusQueryMonitor version_;
    BusQueryMonitor permission_;
};

}  // namespace tarnik
