#include "app/platform/linux/ScreenPermission.h"

#include <QDBusArgument>
#include <QMap>
#include <QStringList>
#include <utility>

#include "app/platform/linux/DesktopPortal.h"
#include "app/platform/linux/SessionBus.h"

namespace tarnik {
namespace {

const BusObject& permissionStore() {
    static const BusObject object{QStringLiteral("org.freedesktop.impl.portal.PermissionStore"),
                                  QStringLiteral("/org/freedesktop/impl/portal/PermissionStore")};
    return object;
}

QString table() {
    return QStringLiteral("screenshot");  // also the name of the table's only entry
}

// Returns a query whose first call starts the service.
BusQueryMonitor::Query startingQuery(QDBusMessage call, std::vector<BusSignal::Match> signals = {}) {
    call.setAutoStartService(true);
    return {.call = call,
            .signals = std::move(signals),
            .onServiceEnd = BusQueryMonitor::OnServiceEnd::keepReply};
}

// The store lists a program outside a sandbox under the name of its desktop entry. If the portal could not
// determine the entry, the name is empty.
std::optional<bool> storedIn(const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ReplyMessage || !reply.signature().startsWith(QLatin1String("a{sas}")))
        return std::nullopt;
    const auto permissions = qdbus_cast<QMap<QString, QStringList>>(reply.arguments().constFirst());
    const QStringList values = permissions.value(ourBusName()) + permissions.value(QString());
    if (values.contains(QStringLiteral("yes"))) return true;
    return values.contains(QStringLiteral("no")) ? std::optional(false) : std::nullopt;
}

}  // namespace

template <class Change>
void ScreenPermission::apply(Change change) {
    const bool wasOn = isOn();
    change();
    const bool wasKnown = std::exchange(isKnown_, version_.hasReply() && permission_.hasReply());
    if (isOn() != wasOn || isKnown_ != wasKnown) onChange_();
}

ScreenPermission::ScreenPermission(const QDBusConnection& bus, std::function<void()> onChange)
    : onChange_(std::move(onChange)),
      version_(
          bus,
          startingQuery(propertyCall(desktopPortal(), QStringLiteral("org.freedesktop.portal.Screenshot"),
                                     QStringLiteral("version"))),
          [this](const QDBusMessage& reply) {
              apply([&] { hasScreenshots_ = replyValue(reply).toUInt() > 0; });
          }),
      permission_(bus,
                  startingQuery(busCall(permissionStore(), permissionStore().service,
                                        QStringLiteral("Lookup"), {table(), table()}),
                                {{.path = permissionStore().path,
                                  .interface = permissionStore().service,
                                  .name = QStringLiteral("Changed"),
                                  .firstArgument = table()}}),
                  [this](const QDBusMessage& reply) { apply([&] { stored_ = storedIn(reply); }); }) {}

void ScreenPermission::prompted(bool granted) {
    apply([&] { wasGranted_ = granted; });
    permission_.refresh();
}

}  // namespace tarnik
