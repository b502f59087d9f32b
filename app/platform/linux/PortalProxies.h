#pragma once

#include <QDBusConnection>

#include "core/foundation/ProxyRoute.h"
#include "core/foundation/Time.h"

namespace tarnik {

// Returns a lookup that asks the portal for the desktop's proxies. The portal runs the configuration scripts
// of the desktop. The lookup blocks for at most `timeout`, and returns no routes without a portal or its
// reply. It may be called on any thread but the main one.
ProxyLookup portalProxies(const QDBusConnection& bus, Seconds timeout = Seconds(10));

}  // namespace tarnik
