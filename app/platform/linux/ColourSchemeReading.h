#pragma once

#include <QDBusConnection>
#include <functional>
#include <optional>

#include "app/platform/DesktopPlatform.h"
#include "app/platform/linux/BusReading.h"

namespace tarnik {

// Tells the colour scheme that the portal knows of: first what it is, unknown too, then each change. Main
// thread. Doesn't start the portal.
class ColourSchemeReading {
public:
    using OnScheme = std::function<void(ColourScheme)>;

    ColourSchemeReading(const QDBusConnection& bus, OnScheme onScheme);

private:
    void answered(const QDBusMessage& answer);

    const OnScheme onScheme_;
    std::optional<ColourScheme> told_;
    BusReading reading_;
};

}  // namespace tarnik
