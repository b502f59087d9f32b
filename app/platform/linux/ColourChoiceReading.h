#pragma once

#include <QDBusConnection>
#include <functional>
#include <optional>

#include "app/platform/ColourChoice.h"
#include "app/platform/linux/BusReading.h"

namespace tarnik {

// Tells the colours that the portal knows of: first what they are, without a choice too, then each change.
// Main thread. Doesn't start the portal.
class ColourChoiceReading {
public:
    using OnChoice = std::function<void(const ColourChoice&)>;

    ColourChoiceReading(const QDBusConnection& bus, OnChoice onChoice);

private:
    void answered(const QDBusMessage& answer);

    const OnChoice onChoice_;
    std::optional<ColourChoice> told_;
    BusReading reading_;
};

}  // namespace tarnik
