#include "app/platform/linux/AccessibilityBus.h"

#include <QDBusVariant>
#include <utility>

#include "app/platform/linux/SessionBus.h"

namespace tarnik {
namespace {

const BusObject& accessibilityBus() {
    static const BusObject object{QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus")};
    return object;
}

QString status() {
    return QStringLiteral("org.a11y.Status");
}

QString property() {
    return QStringLiteral("IsEnabled");
}

// The call may start the accessibility bus. The desktop provides that bus, and it shows no window.
QDBusMessage enabledCall() {
    auto call = propertyCall(accessibilityBus(), status(), property());
    call.setAutoStartService(true);
    return call;
}

QString properties() {
    return QStringLiteral("org.freedesktop.DBus.Properties");
}

}  // namespace

AccessibilityBus::AccessibilityBus(const QDBusConnection& bus, std::function<void()> onChange)
    : bus_(bus),
      onChange_(std::move(onChange)),
      monitor_(bus,
               {.call = enabledCall(),
                .signals = {{.path = accessibilityBus().path,
                             .interface = properties(),
                             .name = QStringLiteral("PropertiesChanged"),
                             .firstArgument = status()}}},
               [this](const QDBusMessage& reply) { replied(reply); }) {}

void AccessibilityBus::turnOn(std::function<void(bool done)> onDone) {
    const auto value = QVariant::fromValue(QDBusVariant(true));
    auto call =
        busCall(accessibilityBus(), properties(), QStringLiteral("Set"), {status(), property(), value});
    call.setAutoStartService(true);
    callBusAsync(bus_, call, busCallTimeout, context_,
                 [this, onDone = std::move(onDone)](const QDBusMessage& reply) {
                     monitor_.refresh();
                     onDone(reply.type() == QDBusMessage::ReplyMessage);
                 });
}

void AccessibilityBus::replied(const QDBusMessage& reply) {
    const bool wasOn = std::exchange(isOn_, replyValue(reply).toBool());
    const bool wasKnown = std::exchange(isKnown_, true);
    if (isOn_ != wasOn || !wasKnown) onChange_();
}

}  // namespace tarnik
