#include "app/platform/linux/TrayHostMonitor.h"

#include <utility>

#include "app/platform/linux/SessionBus.h"

namespace tarnik {
namespace {

BusQueryMonitor::Question question() {
    const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
    const QString path = QStringLiteral("/StatusNotifierWatcher");
    const auto hint = [&](const char* name) { return BusSignal::Match{path, watcher, QLatin1String(name)}; };
    return {
        .call = busPropertyCall({watcher, path}, watcher, QStringLiteral("IsStatusNotifierHostRegistered")),
        .hints = {hint("StatusNotifierHostRegistered"), hint("StatusNotifierHostUnregistered")}};
}

}  // namespace

TrayHostMonitor::TrayHostMonitor(const QDBusConnection& bus, OnHost onHost)
    : onHost_(std::move(onHost)),
      reading_(bus, question(), [this](const QDBusMessage& answer) { answered(answer); }) {}

void TrayHostMonitor::answered(const QDBusMessage& answer) {
    const TrayHost host = busValue(answer).toBool() ? TrayHost::present : TrayHost::absent;
    if (std::exchange(told_, host) == host) return;
    onHost_(host);
}

}  // namespace tarnik
