#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariant>
#include <functional>

#include "core/foundation/Time.h"

namespace tarnik {

// Upper bound for the reply of a service that already runs.
inline constexpr Seconds busCallTimeout = std::chrono::seconds(10);

// Keeps the D-Bus library from starting a private session bus if it finds none: such a bus would be useless
// and would outlive this program. Changes this process's environment, not the one that children inherit. Call
// it before anything connects to the bus, while no other thread reads the environment.
void disableBusAutolaunch();

// Returns our well-known name on the bus. It equals the name of our desktop entry.
QString ourBusName();

// The address of a D-Bus object.
struct BusObject {
    QString service;
    QString path;
};

// Makes a method call. It does not start the service unless the caller enables that in the message.
QDBusMessage busCall(const BusObject& object, const QString& interface, const QString& operation,
                     const QVariantList& arguments = {});
// Makes a call that reads a property.
QDBusMessage propertyCall(const BusObject& object, const QString& interface, const QString& property);

// Sends the call and passes the reply to `onReply`. A missing bus and a timeout yield an error reply. Never
// calls `onReply` before it returns, nor after `context` is destroyed. Main thread.
void callBusAsync(const QDBusConnection& bus, const QDBusMessage& call, Seconds timeout, QObject& context,
                  std::function<void(const QDBusMessage& reply)> onReply);

// Returns the only value of a reply, unwrapped from its variants. Returns an invalid value for an error.
QVariant replyValue(const QDBusMessage& reply);

}  // namespace tarnik
