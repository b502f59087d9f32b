#include "app/platform/linux/PortalProxies.h"

#include <QStringList>
#include <string>
#include <utility>

#include "app/platform/linux/DesktopPortal.h"
#include "app/platform/linux/SessionBus.h"

namespace tarnik {
namespace {

ProxyRoutes routesIn(const QDBusMessage& reply) {
    ProxyRoutes routes;
    for (const auto& text : replyValue(reply).toStringList())
        if (auto route = ProxyRoute::parse(text.toStdString())) routes.push_back(std::move(*route));
    return routes;
}

}  // namespace

// The call waits for a portal that is being started, because the first transfer begins with the session.
ProxyLookup portalProxies(const QDBusConnection& bus, Seconds timeout) {
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(timeout).count();
    return [bus, milliseconds](const std::string& url) {
        auto call = busCall(desktopPortal(), QStringLiteral("org.freedesktop.portal.ProxyResolver"),
                            QStringLiteral("Lookup"), {QString::fromStdString(url)});
        call.setAutoStartService(true);
        return routesIn(bus.call(call, QDBus::Block, static_cast<int>(milliseconds)));
    };
}

}  // namespace tarnik
