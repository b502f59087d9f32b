#include "app/platform/linux/TrayHostMonitor.h"

#include <utility>

#include "app/platform/linux/SessionBus.h"

namespace tarnik {
namespace {

BusQueryMonitor::Query query() {
    const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
    const QString path = QStringLiteral("/StatusNotifierWatcher");
    const auto signal = [&](const char* name) {
        return BusSignal::Match{path, watcher, QLatin1String(name)};
    };
    return {.call = propertyCall({watcher, path}, watcher, QStringLiteral("IsStatusNotifierHostRegistered")),
            .signals = {signal("StatusNotifierHostRegistered"), signal("StatusNotifierHostUnregistered")}};
}

}  // namespace

TrayHostMonitor::TrayHostMonitor(const QDBusConnection& bus, OnHost onHost)
    : onHost_(std::move(onHost)),
      monitor_(bus, query(), [this](const QDBusMessage& reply) { replied(reply); }) {}

// If the bus is lost, the error reply has no value, and the tray counts as absent.
void TrayHostMonitor::replied(const QDBusMessage& reply) {
    const TrayHost host = replyValue(reply).toBool() ? TrayHost::present : TrayHost::absent;
    if (std::exchange(reported_, host) == host) return;
    onHost_(host);
}

}  // namespace tarnik
