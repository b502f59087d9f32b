#pragma once

#include <QDBusConnection>
#include <functional>
#include <optional>

#include "app/platform/AppearanceSettings.h"
#include "app/platform/linux/BusQueryMonitor.h"

namespace tarnik {

// Tells the colours that the portal knows of: first what they are, without a choice too, then each change.
// Main thread. Doesn't start the portal.
class AppearanceMonitor {
public:
    using OnChoice = std::function<void(const AppearanceSettings&)>;

    AppearanceMonitor(const QDBusConnection& bus, OnChoice onChoice);

private:
    void answered(const QDBusMessage& answer);

    const OnChoice onChoice_;
    std::optional<AppearanceSettings> told_;
    BusQueryMonitor reading_;
};

}  // namespace tarnik
