#include "app/platform/linux/DesktopPortal.h"

namespace tarnik {

const BusObject& desktopPortal() {
    static const BusObject object{QStringLiteral("org.freedesktop.portal.Desktop"),
                                  QStringLiteral("/org/freedesktop/portal/desktop")};
    return object;
}

void registerWithPortal(const QDBusConnection& bus) {
    auto call = busCall(desktopPortal(), QStringLiteral("org.freedesktop.host.portal.Registry"),
                        QStringLiteral("Register"), {ourBusName(), QVariantMap()});
    call.setAutoStartService(true);
    bus.send(call);  // the reply does not matter
}

}  // namespace tarnik
