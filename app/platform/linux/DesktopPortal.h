#pragma once

#include <QDBusConnection>

#include "app/platform/linux/SessionBus.h"

namespace tarnik {

// Returns the address of the desktop portal. The portal shows permission dialogs for programs.
const BusObject& desktopPortal();

// Registers our desktop entry with the portal. Call it before any other call to the portal. Older portals
// lack the method that this calls, and determine the entry themselves.
void registerWithPortal(const QDBusConnection& bus);

}  // namespace tarnik
