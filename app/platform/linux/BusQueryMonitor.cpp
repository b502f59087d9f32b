#include "app/platform/linux/BusQueryMonitor.h"

#include <utility>

#include "app/platform/linux/SessionBus.h"

namespace tarnik {

BusQueryMonitor::BusQueryMonitor(const QDBusConnection& bus, Query query, OnReply onReply)
    : bus_(bus), query_(std::move(query)), onReply_(std::move(onReply)) {
    subscribe({.path = QStringLiteral("/org/freedesktop/DBus"),
               .interface = QStringLiteral("org.freedesktop.DBus"),
               .name = QStringLiteral("NameOwnerChanged"),
               .firstArgument = query_.call.service()},
              [this](const QDBusMessage& signal) { ownerChanged(signal); });
    // libdbus itself emits this signal when the bus is lost. The refresh then fails at once.
    subscribe({.path = QStringLiteral("/org/freedesktop/DBus/Local"),
               .interface = QStringLiteral("org.freedesktop.DBus.Local"),
               .name = QStringLiteral("Disconnected")},
              [this](const QDBusMessage&) { refresh(); });
    for (const auto& match : query_.signals) subscribe(match, [this](const QDBusMessage&) { refresh(); });
    refresh();
    // Later calls don't start the service. Otherwise a service that crashes on our call would be restarted
    // without end.
    query_.call.setAutoStartService(false);
}

void BusQueryMonitor::subscribe(const BusSignal::Match& match, BusSignal::Handler handler) {
    signals_.push_back(std::make_unique<BusSignal>(bus_, match, std::move(handler)));
}

void BusQueryMonitor::ownerChanged(const QDBusMessage& signal) {
    const bool hasEnded = signal.arguments().value(2).toString().isEmpty();
    if (!hasEnded || query_.onServiceEnd == OnServiceEnd::query) refresh();
}

void BusQueryMonitor::refresh() {
    if (isPending_) {
        mustRefresh_ = true;
        return;
    }
    isPending_ = true;
    callBusAsync(bus_, query_.call, busCallTimeout, context_,
                 [this](const QDBusMessage& reply) { replied(reply); });
}

void BusQueryMonitor::replied(const QDBusMessage& reply) {
    isPending_ = false;
    if (std::exchange(mustRefresh_, false)) return refresh();
    hasReply_ = true;
    onReply_(reply);
}

}  // namespace tarnik
