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

// It comes with the desktop, which starts it when it is first asked; nothing is seen of that.
QDBusMessage enabledCall() {
    auto call = busPropertyCall(accessibilityBus(), status(), property());
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
      reading_(bus,
               {.call = enabledCall(),
                .hints = {{.path = accessibilityBus().path,
                           .interface = properties(),
                           .name = QStringLiteral("PropertiesChanged"),
                           .firstArgument = status()}}},
               [this](const QDBusMessage& answer) { answered(answer); }) {}

void AccessibilityBus::turnOn(std::function<void(bool done)> onDone) {
    const auto value = QVariant::fromValue(QDBusVariant(true));
    auto call =
        busCall(accessibilityBus(), properties(), QStringLiteral("Set"), {status(), property(), value});
    call.setAutoStartService(true);
    callBusAsync(bus_, call, busCallBound, context_,
                 [this, onDone = std::move(onDone)](const QDBusMessage& answer) {
                     reading_.ask();
                     onDone(answer.type() == QDBusMessage::ReplyMessage);
                 });
}

void AccessibilityBus::answered(const QDBusMessage& answer) {
    const bool wasOn = std::exchange(isOn_, busValue(answer).toBool());
    const bool wasKnown = std::exchange(isKnown_, true);
    if (isOn_ != wasOn || !wasKnown) onChange_();
}

}  // namespace tarnik
