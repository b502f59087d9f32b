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
    return QStringLiteral("screenshot");  // and the name of its one entry
}

BusQueryMonitor::Question starting(QDBusMessage call, std::vector<BusSignal::Match> hints = {}) {
    call.setAutoStartService(true);
    return {.call = call,
            .hints = std::move(hints),
            .withoutProgram = BusQueryMonitor::WithoutProgram::keepAnswer};
}

// Programs outside a sandbox are noted under the name of their desktop entry, when the portal can tell, and
// otherwise all under no name.
std::optional<bool> notedIn(const QDBusMessage& answer) {
    if (answer.type() != QDBusMessage::ReplyMessage ||
        !answer.signature().startsWith(QLatin1String("a{sas}")))
        return std::nullopt;
    const auto permissions = qdbus_cast<QMap<QString, QStringList>>(answer.arguments().constFirst());
    const QStringList noted = permissions.value(ourBusName()) + permissions.value(QString());
    if (noted.contains(QStringLiteral("yes"))) return true;
    return noted.contains(QStringLiteral("no")) ? std::optional(false) : std::nullopt;
}

}  // namespace

template <class Change>
void ScreenPermission::apply(Change change) {
    const bool wasOn = isOn();
    change();
    const bool wasKnown = std::exchange(isKnown_, version_.hasAnswer() && permission_.hasAnswer());
    if (isOn() != wasOn || isKnown_ != wasKnown) onChange_();
}

ScreenPermission::ScreenPermission(const QDBusConnection& bus, std::function<void()> onChange)
    : onChange_(std::move(onChange)),
      version_(bus,
               starting(busPropertyCall(desktopPortal(), QStringLiteral("org.freedesktop.portal.Screenshot"),
                                        QStringLiteral("version"))),
               [this](const QDBusMessage& answer) {
                   apply([&] { offersPictures_ = busValue(answer).toUInt() > 0; });
               }),
      permission_(bus,
                  starting(busCall(permissionStore(), permissionStore().service, QStringLiteral("Lookup"),
                                   {table(), table()}),
                           {{.path = permissionStore().path,
                             .interface = permissionStore().service,
                             .name = QStringLiteral("Changed"),
                             .firstArgument = table()}}),
                  [this](const QDBusMessage& answer) { apply([&] { noted_ = notedIn(answer); }); }) {}

void ScreenPermission::answered(bool permitted) {
    apply([&] { wasGranted_ = permitted; });
    permission_.ask();
}

}  // namespace tarnik
