#pragma once

#include <QDBusConnection>
#include <functional>
#include <optional>

#include "app/platform/DesktopPlatform.h"
#include "app/platform/linux/BusQueryMonitor.h"

namespace tarnik {

// Reports whether a StatusNotifierItem tray is running: first the initial state and then each change. A tray
// with another protocol counts as absent. Main thread only.
class TrayHostMonitor {
public:
    using OnHost = std::function<void(TrayHost)>;

    TrayHostMonitor(const QDBusConnection& bus, OnHost onHost);

private:
    void replied(const QDBusMessage& reply);

    const OnHost onHost_;
    std::optional<TrayHost> reported_;
    BusQueryMonitor monitor_;
};

}  // namespace tarnik
