#include "app/platform/linux/SessionBus.h"

#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QTimer>
#include <cstdlib>
#include <string>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include "core/foundation/TarnikIdentity.h"

namespace tarnik {
namespace {

std::string variable(const char* name) {
    const char* value = ::getenv(name);
    return value != nullptr ? value : "";
}

// Returns true if this user owns a socket at the path. The D-Bus library accepts no other file as the bus.
bool isOwnSocket(const std::string& path) {
    struct stat found{};
    return ::lstat(path.c_str(), &found) == 0 && S_ISSOCK(found.st_mode) && found.st_uid == ::getuid();
}

}  // namespace

void disableBusAutolaunch() {
    constexpr const char* address = "DBUS_SESSION_BUS_ADDRESS";
    if (!variable(address).empty()) return;
    const std::string runtime = variable("XDG_RUNTIME_DIR");
    if (!runtime.empty() && isOwnSocket(runtime + "/bus")) return;
    ::setenv(address, "disabled:", 1);  // no D-Bus library supports this transport
}

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

QDBusMessage propertyCall(const BusObject& object, const QString& interface, const QString& property) {
    return busCall(object, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                   {interface, property});
}

void callBusAsync(const QDBusConnection& bus, const QDBusMessage& call, Seconds timeout, QObject& context,
                  std::function<void(const QDBusMessage& reply)> onReply) {
    if (!bus.isConnected()) {  // the call would never complete
        return QTimer::singleShot(0, &context, [onReply = std::move(onReply)] { onReply(QDBusMessage()); });
    }
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(timeout).count();
    auto* watcher =
        new QDBusPendingCallWatcher(bus.asyncCall(call, static_cast<int>(milliseconds)), &context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &context,
                     [onReply = std::move(onReply)](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         onReply(finished->reply());
                     });
}

QVariant replyValue(const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() != 1) return {};
    QVariant value = reply.arguments().constFirst();
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value;
}

}  // namespace tarnik
