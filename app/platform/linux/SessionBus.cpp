#include "app/platform/linux/SessionBus.h"

#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QTimer>
#include <utility>

#include "core/foundation/TarnikIdentity.h"

namespace tarnik {

QString ourBusName() {
    constexpr auto name = TarnikIdentity::bundleIdentifier;
    return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
}

QDBusMessage busCall(const BusObject& object, const QString& interface, const QString& operation,
                     const QVariantList& arguments) {
    auto call = QDBusMessage::createMethodCall(object.service, object.path, interface, operation);
    call.setAutoStartService(false);
    call.setArguments(arguments);
    return call;
}

QDBusMessage busPropertyCall(const BusObject& object, const QString& interface, const QString& property) {
    return busCall(object, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                   {interface, property});
}

void callBusAsync(const QDBusConnection& bus, const QDBusMessage& call, Seconds bound, QObject& context,
                  std::function<void(const QDBusMessage& answer)> onAnswer) {
    if (!bus.isConnected()) {  // a call would never come to its end
        return QTimer::singleShot(0, &context,
                                  [onAnswer = std::move(onAnswer)] { onAnswer(QDBusMessage()); });
    }
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(bound).count();
    auto* watcher =
        new QDBusPendingCallWatcher(bus.asyncCall(call, static_cast<int>(milliseconds)), &context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &context,
                     [onAnswer = std::move(onAnswer)](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         onAnswer(finished->reply());
                     });
}

QVariant busValue(const QDBusMessage& answer) {
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().size() != 1) return {};
    QVariant value = answer.arguments().constFirst();
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value;
}

}  // namespace tarnik
