#pragma once

#include <QDBusConnection>
#include <functional>
#include <optional>

#include "app/platform/DesktopPlatform.h"
#include "app/platform/linux/BusQueryMonitor.h"

namespace tarnik {

// Reports whether a StatusNotifierItem tray is running: the initial state and then each change. Trays with
// other protocols count as absent. Main thread.
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
