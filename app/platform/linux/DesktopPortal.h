#pragma once

#include <QDBusConnection>

#include "app/platform/linux/SessionBus.h"

namespace tarnik {

// The portal of the desktop, through which programs ask the person.
const BusObject& desktopPortal();

// Tells the portal which desktop entry is ours. Before anything else is asked of it; older ones don't know
// this, and guess.
void registerWithPortal(const QDBusConnection& bus);

}  // namespace tarnik
