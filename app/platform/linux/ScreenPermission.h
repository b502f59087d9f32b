#pragma once

#include <QDBusConnection>
#include <QObject>
#include <functional>
#include <optional>

#include "app/platform/linux/BusQueryMonitor.h"

namespace tarnik {

// Whether the person lets this program look at the screen: what the desktop portal has noted in its
// permission store. Where the portal offers no pictures of the screen, it is off. Recordings alone don't
// count: a yes to one is for that recording, and noted nowhere that could be read.
//
// Main thread. Starts the portal and its store, which only some desktops do by themselves.
class ScreenPermission {
public:
    ScreenPermission(const QDBusConnection& bus, std::function<void()> onChange);

    bool isOn() const { return offersPictures_ && noted_.value_or(wasGranted_); }

    bool isKnown() const { return isKnown_; }  // told as a change

    // The person has just answered. A yes that no store keeps, as on older desktops, holds for this run.
    void answered(bool permitted);

private:
    template <class Change>
    void apply(Change change);

    const std::function<void()> onChange_;
    bool offersPictures_ = false;
    std::optional<bool> noted_;
    bool wasGranted_ = false;
    bool isKnown_ = false;
    BusQueryMonitor version_;
    BusQueryMonitor permission_;
};

}  // namespace tarnik
