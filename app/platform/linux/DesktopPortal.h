#pragma once

#include <QDBusConnection>

#include "app/platform/linux/SessionBus.h"

namespace tarnik {

// The address of the desktop portal, which shows permission dialogs for programs.
const BusObject& desktopPortal();

// Registers our desktop entry with the portal. Call it before any other call to the portal. Older portals
// lack this method and guess the entry.
void registerWithPortal(const QDBusConnection& bus);

}  // namespace tarnik
