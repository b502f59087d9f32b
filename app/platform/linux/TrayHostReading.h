#pragma once

#include <QDBusConnection>
#include <functional>
#include <optional>

#include "app/platform/DesktopPlatform.h"
#include "app/platform/linux/BusReading.h"

namespace tarnik {

// Tells whether a tray shows the status items that programs register: first what it is, then each change.
// Main thread.
class TrayHostReading {
public:
    using OnHost = std::function<void(TrayHost)>;

    TrayHostReading(const QDBusConnection& bus, OnHost onHost);

private:
    void answered(const QDBusMessage& answer);

    const OnHost onHost_;
    std::optional<TrayHost> told_;
    BusReading reading_;
};

}  // namespace tarnik
