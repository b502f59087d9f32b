#pragma once

#include <QDBusConnection>
#include <QObject>
#include <array>
#include <functional>
#include <optional>

#include "app/platform/linux/BusReading.h"

namespace tarnik {

// Whether the person lets this program look at the screen: what the desktop portal has noted in its
// permission store. Where the portal offers neither pictures nor recordings of the screen, it is off.
//
// Main thread. Starts the portal and its store, which only some desktops do by themselves.
class ScreenPortal {
public:
    ScreenPortal(const QDBusConnection& bus, std::function<void()> onChange);

    bool isOn() const { return noted_.value_or(wasGranted_) && (offers_[0] || offers_[1]); }

    bool isKnown() const { return isKnown_; }  // told as a change

    // The person has just answered. A yes that no store keeps, as on older desktops, holds for this run.
    void answered(bool permitted);

private:
    template <class Change>
    void apply(Change change);

    const std::function<void()> onChange_;
    std::array<bool, 2> offers_{};
    std::optional<bool> noted_;
    bool wasGranted_ = false;
    bool isKnown_ = false;
    BusReading screenshots_;
    BusReading recordings_;
    BusReading permission_;
};

}  // namespace tarnik
