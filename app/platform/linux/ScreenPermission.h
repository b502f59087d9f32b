#pragma once

#include <QDBusConnection>
#include <QObject>
#include <functional>
#include <optional>

#include "app/platform/linux/BusQueryMonitor.h"

namespace tarnik {

// Monitors whether the portal's permission store allows this program to take screenshots. If the portal has
// no Screenshot interface, the permission is off. Permissions for recordings are ignored, because each is
// valid for one recording and can't be read.
//
// Main thread only. Starts the portal and its store, because some desktops don't start them.
class ScreenPermission {
public:
    // Calls `onChange` when isOn or isKnown changes.
    ScreenPermission(const QDBusConnection& bus, std::function<void()> onChange);

    bool isOn() const { return hasScreenshots_ && stored_.value_or(wasGranted_); }
    bool isKnown() const { return isKnown_; }

    // Records the user's answer to a prompt. The answer is valid for this run if the store has no entry, as
    // on older desktops.
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
