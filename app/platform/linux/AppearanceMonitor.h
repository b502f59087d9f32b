#pragma once

#include <QDBusConnection>
#include <functional>
#include <optional>

#include "app/platform/AppearanceSettings.h"
#include "app/platform/linux/BusQueryMonitor.h"

namespace tarnik {

// Reports the appearance settings of the desktop portal: first the initial settings, which may be empty, and
// then each change. Does not start the portal. Main thread only.
class AppearanceMonitor {
public:
    using OnSettings = std::function<void(const AppearanceSettings&)>;

    AppearanceMonitor(const QDBusConnection& bus, OnSettings onSettings);

private:
    void replied(const QDBusMessage& reply);

    const OnSettings onSettings_;
    std::optional<AppearanceSettings> reported_;
    BusQueryMonitor monitor_;
};

}  // namespace tarnik
