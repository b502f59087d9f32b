#pragma once

#include <QDBusConnection>
#include <functional>
#include <optional>

#include "app/platform/DesktopPlatform.h"
#include "app/platform/linux/BusQueryMonitor.h"

namespace tarnik {

// Tells whether a tray shows the status items that programs register: first what it is, then each change.
// Main thread.
class TrayHostMonitor {
public:
    using OnHost = std::function<void(TrayHost)>;

    TrayHostMonitor(const QDBusConnection& bus, OnHost onHost);

private:
    void answered(const QDBusMessage& answer);

    const OnHost onHost_;
    std::optional<TrayHost> told_;
    BusQueryMonitor reading_;
};

}  // namespace tarnik
